#include "support/TestHttpServer.h"
#include <algorithm>
#include <arpa/inet.h>
#include <cctype>
#include <chrono>
#include <condition_variable>
#include <dirent.h>
#include <httplib.h>
#include <mutex>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>

namespace Tallymoor {

namespace {

constexpr std::size_t THREADS = 24; // An idle connection occupies a thread.
constexpr auto PATIENCE = std::chrono::seconds(30);

std::string lowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

int portOf(int socket) {
  sockaddr_in address{};
  socklen_t length = sizeof address;
  if (getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0 ||
      address.sin_family != AF_INET)
    return 0;
  return ntohs(address.sin_port);
}

/// Closes the server's ends of its connections, which the library would keep open for some seconds.
void cutConnections(int port) {
  DIR* const folder = opendir("/proc/self/fd");
  if (folder == nullptr)
    return;
  while (const dirent* const entry = readdir(folder)) {
    const int socket = std::atoi(entry->d_name);
    sockaddr_in peer{};
    socklen_t length = sizeof peer;
    if (portOf(socket) == port && getpeername(socket, reinterpret_cast<sockaddr*>(&peer), &length) == 0)
      shutdown(socket, SHUT_RDWR);
  }
  closedir(folder);
}

TestHttpServer::Request recorded(const httplib::Request& request) {
  TestHttpServer::Request result;
  result.method = request.method;
  result.target = request.target;
  for (const auto& [name, value] : request.headers)
    result.headers[lowerCase(name)] = value;
  result.body = request.body;
  result.clientPort = request.remote_port;
  return result;
}

void send(const TestHttpServer::Response& answer, httplib::Response& response) {
  response.status = answer.status;
  for (const auto& [name, value] : answer.headers)
    response.set_header(name, value);
  if (answer.closeAfter < 0) {
    response.set_content(answer.body, answer.contentType);
    return;
  }
  const auto cut = std::min(static_cast<std::size_t>(answer.closeAfter), answer.body.size());
  response.set_content_provider(
      answer.body.size(), answer.contentType,
      [body = answer.body, cut](std::size_t offset, std::size_t, httplib::DataSink& sink) {
        return offset < cut && sink.write(body.data() + offset, cut - offset);
      });
}

} // namespace

struct TestHttpServer::Implementation {
  httplib::Server server;
  int port = 0;
  std::thread listener;

  mutable std::mutex mutex; ///< Guards everything below.
  mutable std::condition_variable changed;
  std::map<std::string, Response> routes;
  Handler fallback;
  std::function<bool(const Request&)> stalled;
  std::size_t releases = 0;
  bool stopping = false;
  std::vector<Request> requests;

  void answer(const httplib::Request& incoming, httplib::Response& response) {
    const Request request = recorded(incoming);
    send(answerTo(request), response);
  }

  Response answerTo(const Request& request) {
    std::unique_lock lock(mutex);
    requests.push_back(request);
    changed.notify_all();
    if (stalled && stalled(request))
      changed.wait(lock, [this, count = releases] { return releases != count || stopping; });
    const auto found = routes.find(request.target);
    if (found != routes.end())
      return found->second;
    const Handler handler = fallback;
    lock.unlock();
    return handler ? handler(request) : Response{404, "no such page", "text/html", {}, -1};
  }

  void listen() {
    const auto handler = [this](const httplib::Request& request, httplib::Response& response) {
      answer(request, response);
    };
    server.Get(".*", handler);
    server.Post(".*", handler);
    server.new_task_queue = [] { return new httplib::ThreadPool(THREADS); };
    server.set_keep_alive_max_count(100000);
    server.set_tcp_nodelay(true);
    port = server.bind_to_any_port("127.0.0.1");
    if (port <= 0)
      throw std::runtime_error("TestHttpServer: no port on the loopback interface");
    listener = std::thread([this] { server.listen_after_bind(); });
    while (!server.is_running())
      std::this_thread::yield();
  }
};

TestHttpServer::TestHttpServer() : m_implementation(std::make_unique<Implementation>()) {
  m_implementation->listen();
}

TestHttpServer::~TestHttpServer() {
  stop();
}

int TestHttpServer::port() const {
  return m_implementation->port;
}

std::string TestHttpServer::url(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port()) + path;
}

void TestHttpServer::route(const std::string& target, Response response) {
  const std::lock_guard lock(m_implementation->mutex);
  m_implementation->routes[target] = std::move(response);
}

void TestHttpServer::setFallback(Handler handler) {
  const std::lock_guard lock(m_implementation->mutex);
  m_implementation->fallback = std::move(handler);
}

void TestHttpServer::redirect(const std::string& target, const std::string& location) {
  route(target, Response{302, "moved", "text/html", {{"Location", location}}, -1});
}

void TestHttpServer::stall(std::function<bool(const Request&)> which) {
  const std::lock_guard lock(m_implementation->mutex);
  m_implementation->stalled = which ? std::move(which) : [](const Request&) { return true; };
}

void TestHttpServer::release() {
  const std::lock_guard lock(m_implementation->mutex);
  m_implementation->stalled = {};
  ++m_implementation->releases;
  m_implementation->changed.notify_all();
}

std::vector<TestHttpServer::Request> TestHttpServer::requests() const {
  const std::lock_guard lock(m_implementation->mutex);
  return m_implementation->requests;
}

void TestHttpServer::forgetRequests() {
  const std::lock_guard lock(m_implementation->mutex);
  m_implementation->requests.clear();
}

bool TestHttpServer::waitForRequests(std::size_t count) const {
  std::unique_lock lock(m_implementation->mutex);
  return m_implementation->changed.wait_for(
      lock, PATIENCE, [this, count] { return m_implementation->requests.size() >= count; });
}

void TestHttpServer::stop() {
  if (!m_implementation->listener.joinable())
    return;
  {
    const std::lock_guard lock(m_implementation->mutex);
    m_implementation->stopping = true;
    m_implementation->changed.notify_all();
  }
  m_implementation->server.stop();
  cutConnections(m_implementation->port);
  m_implementation->listener.join();
}

} // namespace Tallymoor
