#pragma once
#include "foundation/String.h"
#include <functional>
#include <string>
#include <thread>

namespace Tallymoor {

/// The far end of connections on the loopback interface, for what no proper web server does: every connection
/// is handled, one after the other, by a script that reads and writes bytes as it likes, and is then closed.
class LoopbackPeer {
public:
  class Connection {
  public:
    explicit Connection(int socket) : m_socket(socket) {}
    /// Up to so many bytes; fewer when the client closes.
    std::string read(std::size_t count);
    /// Up to the empty line, and nothing of what follows.
    void readHead();
    /// False when the client has gone.
    bool write(const std::string& bytes);
    /// Reads until the client has closed its side.
    void waitForClose();
    /// Makes the close at the end of the script break the connection.
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
  /// Takes no more connections and waits for the end of the script under way.
  void join();

private:
  void serve();

  const Script m_script;
  int m_listener = -1;
  int m_port = 0;
  std::thread m_thread;
};

} // namespace Tallymoor
