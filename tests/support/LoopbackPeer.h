#pragma once
#include "foundation/String.h"
#include <functional>
#include <string>
#include <thread>

namespace Tallymoor {

/// A server on the loopback interface that violates HTTP as a test demands. Each connection, one after the
/// other, is handled by a script that reads and writes arbitrary bytes, then closed.
class LoopbackPeer {
public:
  class Connection {
  public:
    explicit Connection(int socket) : m_socket(socket) {}
    /// Reads up to count bytes; fewer if the client closes.
    std::string read(std::size_t count);
    /// Reads up to the empty line and nothing after it.
    void readHead();
    /// False if the client has closed the connection.
    bool write(const std::string& bytes);
    /// Reads until the client closes the connection.
    void waitForClose();
    /// Makes the close at the end of the script reset the connection.
    void reset();

  private:
    const int m_socket;
  };
  using Script = std::function<void(Connection&)>;

  explicit LoopbackPeer(Script script);
  ~LoopbackPeer();
  LoopbackPeer(const LoopbackPeer&) = delete;
  LoopbackPeer& operator=(const LoopbackPeer&) = delete;

  /// "http://127.0.0.1:PORT/"
  String address() const;
  /// Accepts no more connections and waits for the current script to end.
  void join();

private:
  void serve();

  const Script m_script;
  int m_listener = -1;
  int m_port = 0;
  std::thread m_thread;
};

} // namespace Tallymoor
