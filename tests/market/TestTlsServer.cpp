#include "TestTlsServer.h"
#include <arpa/inet.h>
#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Tallymoor {

namespace {

constexpr long DAY = 24 * 60 * 60;
constexpr int POLL_MILLISECONDS = 20;

using Key = std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)>;
using Certificate = std::unique_ptr<X509, void (*)(X509*)>;

/// A self-signed certificate for the loopback address.
Certificate certificateOf(EVP_PKEY* key) {
  Certificate certificate(X509_new(), X509_free);
  X509_set_version(certificate.get(), 2);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -DAY);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), DAY);
  X509_set_pubkey(certificate.get(), key);
  X509_NAME* const name = X509_get_subject_name(certificate.get());
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>("127.0.0.1"),
                             -1, -1, 0);
  X509_set_issuer_name(certificate.get(), name);
  X509_EXTENSION* const names = X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1");
  X509_add_ext(certificate.get(), names, -1);
  X509_EXTENSION_free(names);
  EXPECT_GT(X509_sign(certificate.get(), key, EVP_sha256()), 0);
  return certificate;
}

void writeCertificate(const std::string& path, X509* certificate) {
  std::FILE* const file = std::fopen(path.c_str(), "w");
  ASSERT_TRUE(file);
  EXPECT_EQ(PEM_write_X509(file, certificate), 1);
  std::fclose(file);
}

} // namespace

TestTlsServer::TestTlsServer(const std::string& certificateFile, Handler handler)
    : m_context(SSL_CTX_new(TLS_server_method()), SSL_CTX_free), m_handler(std::move(handler)) {
  const Key key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"), EVP_PKEY_free);
  const Certificate certificate = certificateOf(key.get());
  writeCertificate(certificateFile, certificate.get());
  EXPECT_EQ(SSL_CTX_use_certificate(m_context.get(), certificate.get()), 1);
  EXPECT_EQ(SSL_CTX_use_PrivateKey(m_context.get(), key.get()), 1);
  m_socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  EXPECT_EQ(::bind(m_socket, reinterpret_cast<sockaddr*>(&address), size), 0);
  EXPECT_EQ(::listen(m_socket, 8), 0);
  EXPECT_EQ(::getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &size), 0);
  m_port = ntohs(address.sin_port);
  m_thread = std::thread([this] { run(); });
}

TestTlsServer::~TestTlsServer() {
  m_ends = true;
  m_thread.join();
  ::close(m_socket);
}

std::string TestTlsServer::url(const std::string& path) const {
  return "https://127.0.0.1:" + std::to_string(m_port) + path;
}

std::string TestTlsServer::page(const std::string& body) {
  return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) +
         "\r\nConnection: close\r\n\r\n" + body;
}

std::string TestTlsServer::redirection(const std::string& address) {
  return "HTTP/1.1 302 Found\r\nLocation: " + address + "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
}

void TestTlsServer::run() {
  while (!m_ends) {
    pollfd waiting{m_socket, POLLIN, 0};
    if (::poll(&waiting, 1, POLL_MILLISECONDS) <= 0)
      continue;
    const int connection = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
    answer(connection);
    ::close(connection);
  }
}

void TestTlsServer::answer(int connection) {
  const std::unique_ptr<SSL, void (*)(SSL*)> line(SSL_new(m_context.get()), SSL_free);
  SSL_set_fd(line.get(), connection);
  if (SSL_accept(line.get()) != 1)
    return; // A client that does not trust the certificate disconnects.
  std::string request;
  std::array<char, 1024> piece{};
  while (request.find("\r\n\r\n") == std::string::npos) {
    const int count = SSL_read(line.get(), piece.data(), piece.size());
    if (count <= 0)
      return;
    request.append(piece.data(), static_cast<std::size_t>(count));
  }
  const std::size_t begin = request.find(' ') + 1;
  const std::string reply = m_handler(request.substr(begin, request.find(' ', begin) - begin));
  SSL_write(line.get(), reply.data(), static_cast<int>(reply.size()));
  SSL_shutdown(line.get());
}

} // namespace Tallymoor
