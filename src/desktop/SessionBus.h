#pragma once
#include <chrono>
#include <functional>
#include <fx.h>
#include <memory>
#include <sdbus-c++/Error.h>
#include <sdbus-c++/IConnection.h>
#include <utility>

namespace Tallymoor {

/// The connection to the desktop's session bus, served by the toolkit's loop: it has no thread of its own.
/// There may be no bus, and it may go away at any moment; then another connection is tried now and then. What
/// stands on the bus is built by the first hook, for each connection, and taken down by the second.
///
/// GUI thread only.
class SessionBus : public FX::FXObject {
  FXDECLARE_ABSTRACT(SessionBus)
public:
  enum { ID_CONNECTION = 1, ID_WAITING, ID_RECONNECT };

  struct Hooks {
    /// A connection is there. May throw sdbus::Error, which counts as its loss.
    std::function<void(sdbus::IConnection&)> connected;
    /// The connection is about to go, and everything that uses it must. Also comes when `connected` has
    /// thrown, and in the destructor.
    std::function<void()> lost;
  };

  SessionBus(FX::FXApp* app, std::chrono::milliseconds reconnectAfter, Hooks hooks);
  ~SessionBus() override;

  /// Looks for the bus where the desktop says that it is. Without one, looks again after a while.
  void connect();
  bool connected() const { return m_connection != nullptr; }
  /// To be called after something was sent, unless from a hook or one of the bus's own callbacks.
  void watch();

  long onReady(FXObject*, FXSelector, void*);
  long onReconnect(FXObject*, FXSelector, void*);

private:
  void serve();
  void unwatch();
  void drop();

  FX::FXApp* m_app;
  std::chrono::milliseconds m_reconnectAfter;
  Hooks m_hooks;
  std::unique_ptr<sdbus::IConnection> m_connection;
  int m_watchedFile = -1;
};

/// Sends something; false when the connection has gone, which its owner finds from the loop.
template <class Send>
bool trySend(Send&& send) {
  try {
    std::forward<Send>(send)();
    return true;
  } catch (const sdbus::Error&) {
    return false;
  }
}

} // namespace Tallymoor
