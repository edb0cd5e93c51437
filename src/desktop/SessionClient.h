#pragma once
#include "widgets/GuiWakeUp.h"
#include <functional>
#include <fx.h>
#include <memory>
#include <optional>

struct _SmcConn;

namespace Tallymoor {

/// Listens to the desktop's session manager, which tells when the user logs out (the X session management
/// protocol, spoken by all common desktops). It is found by the variable SESSION_MANAGER. Without one, or
/// with one that refuses, hangs or dies, the program goes on as if there were none.
///
/// GUI thread only. The connection is opened by a thread of its own, since a manager that hangs would keep
/// the window from coming up; afterwards the toolkit's loop serves it.
class SessionClient : public FX::FXObject {
  FXDECLARE_ABSTRACT(SessionClient)
public:
  enum { ID_CONNECTION = 1 };

  /// Called from the toolkit's loop, modal ones too, without the big mutex.
  struct Hooks {
    /// Saves what the user has entered, without asking anything: the desktop waits. False when that failed.
    /// Nothing when the program is about to leave by itself, which is then the answer.
    std::function<std::optional<bool>()> save;
    /// The user does not log out after all.
    std::function<void()> cancelled;
    /// The program has to end.
    std::function<void()> end;
  };

  SessionClient(FX::FXApp* app, Hooks hooks);
  /// Leaves the session.
  ~SessionClient() override;

  /// Looks for the manager where the environment says that it is. Comes back at once.
  void connect();
  /// True until the manager has answered, or was given up.
  bool connecting() const;
  bool connected() const { return m_connection != nullptr; }

  long onReady(FXObject*, FXSelector, void*);

private:
  enum class Request { NONE, SAVE, SAVE_NOTHING, CANCELLED, END };
  class Opening;
  struct Callbacks;

  void takeConnection();
  void tellWhoWeAre();
  void watch();
  void unwatch();
  void leave();
  void obey(Request request);

  FX::FXApp* m_app;
  Hooks m_hooks;
  GuiWakeUp m_opened;
  std::unique_ptr<Opening> m_opening;
  _SmcConn* m_connection = nullptr;
  int m_watchedFile = -1;
  Request m_request = Request::NONE;
};

} // namespace Tallymoor
