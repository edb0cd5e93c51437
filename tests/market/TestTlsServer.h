#pragma once
#include <atomic>
#include <functional>
#include <memory>
#include <openssl/ssl.h>
#include <string>
#include <thread>
#include <vector>

namespace Tallymoor {

/// An https server on the loopback interface, with a certificate of its own that nobody else trusts.
class TestTlsServer {
public:
  /// The answer to a request for a path: status, headers and body as they go over the line.
  using Handler = std::function<std::string(const std::string& path)>;

  /// Writes the certificate to this file, for whoever is to trust it.
  TestTlsServer(const std::string& certificateFile, Handler handler);
  ~TestTlsServer();
  TestTlsServer(const TestTlsServer&) = delete;
  TestTlsServer& operator=(const TestTlsServer&) = delete;

  std::string url(const std::string& path) const;

  static std::string page(const std::string& body);
  static std::string redirection(const std::string& address);

private:
  void run();
  void answer(int connection);

  std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)> m_context;
  const Handler m_handler;
  int m_socket = -1;
  unsigned m_port = 0;
  std::atomic<bool> m_ends = false;
  std::thread m_thread;
};

} // namespace Tallymoor
