#include "support/LoopbackPeer.h"
#include <arpa/inet.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace Tallymoor {

std::string LoopbackPeer::Connection::read(std::size_t count) {
  std::string bytes(count, '\0');
  std::size_t length = 0;
  while (length < count) {
    const ssize_t taken = recv(m_socket, bytes.data() + length, count - length, 0);
    if (taken <= 0)
      break;
    length += static_cast<std::size_t>(taken);
  }
  bytes.resize(length);
  return bytes;
}

void LoopbackPeer::Connection::readHead() {
  std::string head;
  while (head.find("\r\n\r\n") == std::string::npos) {
    const std::string byte = read(1);
    if (byte.empty())
      return;
    head += byte;
  }
}

bool LoopbackPeer::Connection::write(const std::string& bytes) {
  return send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) >= 0;
}

void LoopbackPeer::Connection::waitForClose() {
  while (!read(4096).empty()) {
  }
}

void LoopbackPeer::Connection::reset() {
  const linger now{1, 0};
  setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &now, sizeof now);
}

LoopbackPeer::LoopbackPeer(Script script) : m_script(std::move(script)) {
  m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  if (bind(m_listener, reinterpret_cast<sockaddr*>(&address), length) != 0 || listen(m_listener, 8) != 0 ||
      getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length) != 0)
    throw std::runtime_error("LoopbackPeer: no port on the loopback interface");
  m_port = ntohs(address.sin_port);
  m_thread = std::thread([this] { serve(); });
}

LoopbackPeer::~LoopbackPeer() {
  join();
  close(m_listener);
}

void LoopbackPeer::serve() {
  for (;;) {
    const int socket = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0)
      return;
    Connection connection(socket);
    m_script(connection);
    close(socket);
  }
}

String LoopbackPeer::address() const {
  return u"http://127.0.0.1:" + String::fromLong(m_port) + u"/";
}

void LoopbackPeer::join() {
  if (!m_thread.joinable())
    return;
  shutdown(m_listener, SHUT_RDWR); // Wakes the accept call.
  m_thread.join();
}

} // namespace Tallymoor
