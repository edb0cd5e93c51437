#pragma once
#include <atomic>
#include <functional>
#include <memory>
#include <openssl/ssl.h>
#include <string>
#include <thread>
#include <vector>

namespace Tallymoor {

/// An HTTPS server on the loopback interface with a self-signed certificate.
class TestTlsServer {
public:
  /// Returns the raw response to a request for a path: status line, headers and body.
  using Handler = std::function<std::string(const std::string& path)>;

  /// Writes the certificate to this file, for clients that should trust it.
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
