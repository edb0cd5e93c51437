#pragma once
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Tallymoor {

/// A real HTTP server on the loopback interface, on a port that the system chooses. Requests come in on the
/// server's own threads; all operations here are safe on any thread. The destructor stops it.
class TestHttpServer {
public:
  struct Request {
    std::string method;
    std::string target;                         ///< path and query, as sent
    std::map<std::string, std::string> headers; ///< names in lower case
    std::string body;
    int clientPort = 0; ///< tells connections apart
  };
  struct Response {
    int status = 200;
    std::string body = {};
    std::string contentType = "text/html";
    std::vector<std::pair<std::string, std::string>> headers = {};
    /// When not negative, the connection is closed after so many bytes of the body.
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

  /// Answers requests for exactly this target, query included; replaces an earlier route.
  void route(const std::string& target, Response response);
  /// Answers everything that has no route. Without it that is a 404.
  void setFallback(Handler handler);
  void redirect(const std::string& target, const std::string& location);
  /// Answers to the requests that the predicate picks, or to all, wait from now on until release or stop.
  /// Replaces an earlier predicate; requests that wait already go on waiting.
  void stall(std::function<bool(const Request&)> which = {});
  void release();

  std::vector<Request> requests() const;
  void forgetRequests();
  /// Waits until so many requests have arrived since the start or forgetRequests; false after half a minute.
  bool waitForRequests(std::size_t count) const;

  /// Releases what is stalled, cuts the connections, ends the server and joins its threads. Later connections
  /// are refused.
  void stop();

private:
  struct Implementation;
  std::unique_ptr<Implementation> m_implementation;
};

} // namespace Tallymoor
