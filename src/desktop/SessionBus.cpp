#include "desktop/SessionBus.h"
#include "widgets/HandlerScope.h"
#include <algorithm>
#include <poll.h>

namespace Tallymoor {

namespace {

FXDEFMAP(SessionBus)
sessionBusMap[] = {
    FXMAPFUNC(SEL_IO_READ, SessionBus::ID_CONNECTION, SessionBus::onReady),
    FXMAPFUNC(SEL_IO_WRITE, SessionBus::ID_CONNECTION, SessionBus::onReady),
    FXMAPFUNC(SEL_TIMEOUT, SessionBus::ID_WAITING, SessionBus::onReady),
    FXMAPFUNC(SEL_TIMEOUT, SessionBus::ID_RECONNECT, SessionBus::onReconnect),
};

constexpr std::chrono::seconds LONGEST_TRY(2);

/// Rounded up, so that the bus finds its time has come.
FXuint wholeMilliseconds(std::chrono::microseconds time) {
  using std::chrono::milliseconds;
  constexpr milliseconds LONGEST = std::chrono::hours(1);
  return static_cast<FXuint>(std::min(std::chrono::ceil<milliseconds>(time), LONGEST).count());
}

} // namespace

FXIMPLEMENT_ABSTRACT(SessionBus, FXObject, sessionBusMap, ARRAYNUMBER(sessionBusMap))

SessionBus::SessionBus(FXApp* app, std::chrono::milliseconds reconnectAfter, Hooks hooks)
    : m_app(app), m_reconnectAfter(reconnectAfter), m_hooks(std::move(hooks)) {}

SessionBus::~SessionBus() {
  if (m_connection)
    drop();
  m_app->removeTimeout(this, ID_RECONNECT);
}

void SessionBus::connect() {
  const auto start = std::chrono::steady_clock::now();
  try {
    m_connection = sdbus::createSessionBusConnection();
    m_hooks.connected(*m_connection);
    watch();
  } catch (const sdbus::Error&) {
    drop();
    // A bus that hangs has cost the user enough with one try; one that is not there says so at once.
    if (std::chrono::steady_clock::now() - start > LONGEST_TRY)
      m_app->removeTimeout(this, ID_RECONNECT);
  }
}

void SessionBus::drop() {
  unwatch();
  m_hooks.lost();
  m_connection.reset();
  m_app->addTimeout(this, ID_RECONNECT, wholeMilliseconds(m_reconnectAfter));
}

void SessionBus::watch() {
  if (!m_connection)
    return;
  unwatch();
  try {
    const auto poll = m_connection->getEventLoopPollData();
    const FXuint mode = (poll.events & POLLOUT) ? INPUT_READ | INPUT_WRITE : INPUT_READ;
    if (m_app->addInput(poll.fd, mode, this, ID_CONNECTION))
      m_watchedFile = poll.fd;
    if (const auto timeout = poll.getRelativeTimeout())
      m_app->addTimeout(this, ID_WAITING, wholeMilliseconds(*timeout));
  } catch (const sdbus::Error&) {
    // Its loss is found, and told, from the loop: here its users may be in the middle of something.
    m_app->addTimeout(this, ID_WAITING, 0);
  }
}

void SessionBus::unwatch() {
  if (m_watchedFile >= 0)
    m_app->removeInput(m_watchedFile, INPUT_READ | INPUT_WRITE);
  m_watchedFile = -1;
  m_app->removeTimeout(this, ID_WAITING);
}

void SessionBus::serve() {
  if (!m_connection)
    return;
  try {
    while (m_connection->processPendingRequest())
      ;
    watch();
  } catch (const sdbus::Error&) {
    drop();
  }
}

long SessionBus::onReady(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SessionBus::onReady failed.", [this] { serve(); });
}

long SessionBus::onReconnect(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SessionBus::onReconnect failed.", [this] { connect(); });
}

} // namespace Tallymoor
