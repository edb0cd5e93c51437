#include "desktop/SessionClient.h"
#include "foundation/Constants.h"
#include "foundation/EndingSignals.h"
#include "foundation/Mutex.h"
#include <X11/SM/SMlib.h>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <pthread.h>
#include <pwd.h>
#include <string>
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

/// Opens the connection on a thread of its own. A manager that hangs keeps the thread in a system call: the
/// destructor ends that by signals, and joins the thread.
class SessionClient::Opening {
public:
  Opening(GuiWakeUp& opened, std::string address);
  ~Opening();
  Opening(const Opening&) = delete;
  Opening& operator=(const Opening&) = delete;

  /// True until the manager has answered or failed, and its connection was taken.
  bool isGoingOn() const;
  /// The connection, once, when it is there.
  SmcConn take();

private:
  void open(std::string address);

  GuiWakeUp& m_opened;
  mutable Mutex m_mutex;
  std::condition_variable_any m_changed;
  SmcConn m_connection GUARDED_BY(m_mutex) = nullptr;
  bool m_ended GUARDED_BY(m_mutex) = false;
  std::jthread m_thread; ///< refers to the others
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

constexpr int INTERRUPT = SIGURG;
constexpr std::chrono::milliseconds BETWEEN_INTERRUPTS{10};

/// The libraries would end the process when the manager dies, and the system would at the next word to it.
void outliveTheManager() {
  struct sigaction interrupt = {};
  interrupt.sa_handler = [](int) {};
  ::sigaction(INTERRUPT, &interrupt, nullptr); // system calls fail, and are not begun again
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

SessionClient::~SessionClient() {
  m_opening.reset();
  leave();
}

void SessionClient::connect() {
  const char* address = std::getenv("SESSION_MANAGER");
  if (!address || !*address || m_opening)
    return;
  outliveTheManager();
  m_opening = std::make_unique<Opening>(m_opened, address);
}

SessionClient::Opening::Opening(GuiWakeUp& opened, std::string address) : m_opened(opened) {
  const EndingSignalsBlocked blocked;
  m_thread = std::jthread([this, address = std::move(address)] { open(address); });
}

SessionClient::Opening::~Opening() {
  MutexLock lock(m_mutex);
  const auto isEnded = [this]() REQUIRES(m_mutex) { return m_ended; };
  // A signal that comes just before a system call is lost, so one is not enough.
  while (!m_changed.wait_for(lock, BETWEEN_INTERRUPTS, isEnded))
    ::pthread_kill(m_thread.native_handle(), INTERRUPT);
  if (m_connection)
    SmcCloseConnection(m_connection, 0, nullptr);
}

void SessionClient::Opening::open(std::string address) {
  SmcCallbacks callbacks = Callbacks::of(nullptr);
  char* identifier = nullptr;
  char reason[256] = "";
  // With a context of its own it never shares a connection that hangs.
  SmcConn connection = SmcOpenConnection(address.data(), this, SmProtoMajor, SmProtoMinor, Callbacks::ALL,
                                         &callbacks, nullptr, &identifier, sizeof reason, reason);
  std::free(identifier);
  const MutexLock lock(m_mutex);
  m_ended = true;
  m_connection = connection;
  m_opened.wake();
  m_changed.notify_all();
}

bool SessionClient::Opening::isGoingOn() const {
  const MutexLock lock(m_mutex);
  return !m_ended || m_connection;
}

SmcConn SessionClient::Opening::take() {
  const MutexLock lock(m_mutex);
  return std::exchange(m_connection, nullptr);
}

bool SessionClient::connecting() const {
  return m_opening && m_opening->isGoingOn();
}

void SessionClient::takeConnection() {
  SmcConn connection = m_opening->take();
  if (!connection)
    return;
  m_connection = connection;
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
