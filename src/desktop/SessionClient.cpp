#include "desktop/SessionClient.h"
#include "foundation/Constants.h"
#include "foundation/EndingSignals.h"
#include <X11/SM/SMlib.h>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <pwd.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Tallymoor {

FXDEFMAP(SessionClient)
sessionClientMap[] = {
    FXMAPFUNC(SEL_IO_READ, SessionClient::ID_CONNECTION, SessionClient::onReady),
};

FXIMPLEMENT_ABSTRACT(SessionClient, FXObject, sessionClientMap, ARRAYNUMBER(sessionClientMap))

struct SessionClient::Opening {
  std::mutex mutex;
  GuiWakeUp* opened = nullptr;    ///< null once the client has given up; guarded by the mutex
  _SmcConn* connection = nullptr; ///< until the client takes it; guarded by the mutex
  bool ended = false;             ///< guarded by the mutex
};

/// What the library calls: while it reads a message, so the request is only noted.
struct SessionClient::Callbacks {
  static constexpr unsigned long ALL =
      SmcSaveYourselfProcMask | SmcDieProcMask | SmcSaveCompleteProcMask | SmcShutdownCancelledProcMask;

  static void note(SmPointer client, Request request) {
    if (client)
      static_cast<SessionClient*>(client)->m_request = request;
  }
  /// A manager that only wants to know how a program's windows stand, as it does when the program is new, is
  /// no reason to write any file.
  static void saveYourself(SmcConn, SmPointer client, int type, Bool shutdown, int, Bool) {
    note(client, shutdown || type != SmSaveLocal ? Request::SAVE : Request::SAVE_NOTHING);
  }
  static void die(SmcConn, SmPointer client) { note(client, Request::END); }
  static void saveComplete(SmcConn, SmPointer) {}
  static void shutdownCancelled(SmcConn, SmPointer client) { note(client, Request::CANCELLED); }

  /// Null for messages without a listener so far.
  static SmcCallbacks of(SessionClient* client) {
    SmcCallbacks callbacks;
    callbacks.save_yourself = {&saveYourself, client};
    callbacks.die = {&die, client};
    callbacks.save_complete = {&saveComplete, client};
    callbacks.shutdown_cancelled = {&shutdownCancelled, client};
    return callbacks;
  }
};

namespace {

/// The libraries would end the process when the manager dies, and the system would at the next word to it.
void outliveTheManager() {
  IceSetIOErrorHandler([](IceConn) {});
  IceSetErrorHandler([](IceConn, Bool, int, unsigned long, int, int, IcePointer) {});
  SmcSetErrorHandler([](SmcConn, Bool, int, unsigned long, int, int, SmPointer) {});
  std::signal(SIGPIPE, SIG_IGN);
}

std::string userName() {
  const passwd* user = ::getpwuid(::getuid());
  return user ? user->pw_name : std::to_string(::getuid());
}

std::string programPath() {
  std::error_code unknown;
  const auto path = std::filesystem::read_symlink("/proc/self/exe", unknown);
  return unknown ? APP_EXE.toUTF8() : path.string();
}

/// A property of one value, in the form that the library wants.
struct Property {
  std::string name;
  std::string type;
  std::string value;
};

void setProperties(SmcConn connection, std::vector<Property> properties) {
  std::vector<SmPropValue> values;
  std::vector<SmProp> forms;
  std::vector<SmProp*> pointers;
  values.reserve(properties.size());
  forms.reserve(properties.size());
  for (Property& property : properties) {
    values.push_back({static_cast<int>(property.value.size()), property.value.data()});
    forms.push_back({property.name.data(), property.type.data(), 1, &values.back()});
    pointers.push_back(&forms.back());
  }
  SmcSetProperties(connection, static_cast<int>(pointers.size()), pointers.data());
}

} // namespace

SessionClient::SessionClient(FXApp* app, Hooks hooks)
    : m_app(app), m_hooks(std::move(hooks)), m_opened(app, [this] { takeConnection(); }) {}

// A thread that still waits for an answer is left to itself: it shares nothing with what dies here.
SessionClient::~SessionClient() {
  if (m_opening) {
    takeConnection();
    const std::lock_guard lock(m_opening->mutex);
    m_opening->opened = nullptr;
  }
  leave();
}

void SessionClient::connect() {
  const char* address = std::getenv("SESSION_MANAGER");
  if (!address || !*address || m_opening)
    return;
  outliveTheManager();
  m_opening = std::make_shared<Opening>();
  m_opening->opened = &m_opened;
  const EndingSignalsBlocked blocked;
  std::thread(&SessionClient::open, m_opening, std::string(address)).detach();
}

void SessionClient::open(const std::shared_ptr<Opening>& opening, std::string address) {
  SmcCallbacks callbacks = Callbacks::of(nullptr);
  char* identifier = nullptr;
  char reason[256] = "";
  // With a context of its own it never shares a connection that hangs.
  SmcConn connection =
      SmcOpenConnection(address.data(), opening.get(), SmProtoMajor, SmProtoMinor, Callbacks::ALL, &callbacks,
                        nullptr, &identifier, sizeof reason, reason);
  std::free(identifier);
  const std::lock_guard lock(opening->mutex);
  opening->ended = true;
  if (opening->opened) {
    opening->connection = connection;
    opening->opened->wake();
  } else if (connection) {
    SmcCloseConnection(connection, 0, nullptr);
  }
}

bool SessionClient::connecting() const {
  if (!m_opening)
    return false;
  const std::lock_guard lock(m_opening->mutex);
  return !m_opening->ended || m_opening->connection;
}

void SessionClient::takeConnection() {
  {
    const std::lock_guard lock(m_opening->mutex);
    if (!m_opening->connection)
      return;
    m_connection = std::exchange(m_opening->connection, nullptr);
  }
  SmcCallbacks callbacks = Callbacks::of(this);
  SmcModifyCallbacks(m_connection, Callbacks::ALL, &callbacks);
  tellWhoWeAre();
  watch();
}

// The program takes no arguments, so one that the manager starts at the next log-in could not say that it is
// the one from before: it would be waited for, and in the end counted twice. So it asks not to be started.
void SessionClient::tellWhoWeAre() {
  const std::string path = programPath();
  setProperties(m_connection, {{SmProgram, SmARRAY8, APP_EXE.toUTF8()},
                               {SmUserID, SmARRAY8, userName()},
                               {SmProcessID, SmARRAY8, std::to_string(::getpid())},
                               {SmRestartCommand, SmLISTofARRAY8, path},
                               {SmCloneCommand, SmLISTofARRAY8, path},
                               {SmRestartStyleHint, SmCARD8, std::string(1, char(SmRestartNever))}});
}

void SessionClient::watch() {
  const int file = IceConnectionNumber(SmcGetIceConnection(m_connection));
  ::fcntl(file, F_SETFD, FD_CLOEXEC);
  if (m_app->addInput(file, INPUT_READ, this, ID_CONNECTION))
    m_watchedFile = file;
  else
    leave();
}

void SessionClient::unwatch() {
  if (m_watchedFile >= 0)
    m_app->removeInput(m_watchedFile, INPUT_READ);
  m_watchedFile = -1;
}

void SessionClient::leave() {
  unwatch();
  if (m_connection)
    SmcCloseConnection(std::exchange(m_connection, nullptr), 0, nullptr);
}

long SessionClient::onReady(FXObject*, FXSelector, void*) {
  if (!m_connection)
    return 1;
  m_request = Request::NONE;
  switch (IceProcessMessages(SmcGetIceConnection(m_connection), nullptr, nullptr)) {
  case IceProcessMessagesSuccess:
    obey(m_request);
    break;
  case IceProcessMessagesIOError:
    leave();
    break;
  case IceProcessMessagesConnectionClosed: // and gone already
    unwatch();
    m_connection = nullptr;
    break;
  }
  return 1;
}

void SessionClient::obey(Request request) {
  switch (request) {
  case Request::NONE:
    break;
  case Request::SAVE:
    if (const auto saved = m_hooks.save())
      SmcSaveYourselfDone(m_connection, *saved);
    break;
  case Request::SAVE_NOTHING:
    SmcSaveYourselfDone(m_connection, True);
    break;
  case Request::CANCELLED:
    m_hooks.cancelled();
    break;
  case Request::END:
    m_hooks.end();
    break;
  }
}

} // namespace Tallymoor
