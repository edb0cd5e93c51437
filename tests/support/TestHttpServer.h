#pragma once
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Tallymoor {

/// A real HTTP server on the loopback interface, on a free port. Handlers run on the server's threads. All
/// operations are thread-safe. The destructor stops the server.
class TestHttpServer {
public:
  struct Request {
    std::string method;
    std::string target;                         ///< Path and query, as sent.
    std::map<std::string, std::string> headers; ///< Names in lower case.
    std::string body;
    int clientPort = 0; ///< Distinguishes connections.
  };
  struct Response {
    int status = 200;
    std::string body = {};
    std::string contentType = "text/html";
    std::vector<std::pair<std::string, std::string>> headers = {};
    /// If not negative, closes the connection after this number of body bytes.
    long closeAfter = -1;
  };
  using Handler = std::function<Response(const Request&)>;

  TestHttpServer();
  ~TestHttpServer();
  TestHttpServer(const TestHttpServer&) = delete;
  TestHttpServer& operator=(const TestHttpServer&) = delete;

  int port() const;
  /// "http://127.0.0.1:PORT" and the path, which begins with "/".
  std::string url(const std::string& path) const;

  /// Sets the response for exactly this target, query included. Replaces an earlier one.
  void route(const std::string& target, Response response);
  /// Handles all other targets. Without it they get a 404.
  void setFallback(Handler handler);
  void redirect(const std::string& target, const std::string& location);
  /// Holds back the responses to matching requests (all without a predicate) until release or stop. Replaces
  /// an earlier predicate; requests already waiting continue to wait.
  void stall(std::function<bool(const Request&)> which = {});
  void release();

  std::vector<Request> requests() const;
  void forgetRequests();
  /// Waits until this number of requests has arrived since the start or forgetRequests. False after 30
  /// seconds.
  bool waitForRequests(std::size_t count) const;

  /// Releases stalled requests, closes the connections and joins the threads. Later connections are refused.
  void stop();

private:
  struct Implementation;
  std::unique_ptr<Implementation> m_implementation;
};

} // namespace Tallymoor
