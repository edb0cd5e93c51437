#include "desktop/DesktopNotifications.h"
#include "desktop/SessionBus.h"
#include "desktop/SystemTray.h"
#include "foundation/Constants.h"
#include "foundation/FirstUnits.h"
#include <algorithm>
#include <map>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <vector>

namespace Tallymoor {

namespace {

const std::string SERVICE = "org.freedesktop.Notifications";
const std::string PATH = "/org/freedesktop/Notifications";
constexpr std::int32_t SERVICE_DECIDES = -1; ///< how long a balloon stays

/// The names of shares hold "&" and "<", which a service that reads markup would swallow.
std::string escaped(const std::string& text) {
  std::string safe;
  for (const char c : text) {
    if (c == '&')
      safe += "&amp;";
    else if (c == '<')
      safe += "&lt;";
    else if (c == '>')
      safe += "&gt;";
    else
      safe += c;
  }
  return safe;
}

using Hints = std::map<std::string, sdbus::Variant>;

Hints hintsOf(const Balloon& balloon, const TrayPicture& picture) {
  Hints hints;
  hints["urgency"] = sdbus::Variant(static_cast<std::uint8_t>(std::clamp(balloon.level, 0, 2)));
  if (picture.width > 0)
    hints["image-data"] =
        sdbus::Variant(sdbus::make_struct(picture.width, picture.height, picture.width * 4, true,
                                          std::int32_t(8), std::int32_t(4), picture.rgba()));
  return hints;
}

} // namespace

DesktopNotifications::DesktopNotifications(std::chrono::milliseconds answerTimeout, NotShown notShown)
    : m_answerTimeout(answerTimeout), m_notShown(std::move(notShown)) {}

DesktopNotifications::~DesktopNotifications() = default;

void DesktopNotifications::connect(sdbus::IConnection& connection) {
  m_service = sdbus::createProxy(connection, SERVICE, PATH);
  m_ownerMatch = connection.addMatch("type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop."
                                     "DBus',member='NameOwnerChanged',arg0='" +
                                         SERVICE + "'",
                                     [this](sdbus::Message&) { m_abilities.reset(); });
}

void DesktopNotifications::disconnect() {
  m_ownerMatch.reset();
  m_service.reset();
  m_abilities.reset();
  m_asking = false;
  giveBackWaiting();
  while (!m_sent.empty())
    answered(m_sent.begin(), false);
}

void DesktopNotifications::show(const Balloon& balloon) {
  if (!m_service) {
    m_notShown(balloon);
    return;
  }
  m_waiting.push_back(balloon);
  if (m_abilities)
    sendWaiting();
  else if (!m_asking)
    askAbilities();
}

void DesktopNotifications::askAbilities() {
  m_asking = trySend([this] {
    m_service->callMethodAsync("GetCapabilities")
        .onInterface(SERVICE)
        .withTimeout(m_answerTimeout)
        .uponReplyInvoke([this](const sdbus::Error* error, const std::vector<std::string>& names) {
          m_asking = false;
          if (error)
            giveBackWaiting();
          else
            abilitiesTold(names);
        });
  });
  if (!m_asking)
    giveBackWaiting();
}

void DesktopNotifications::abilitiesTold(const std::vector<std::string>& names) {
  const auto can = [&names](const char* name) { return std::count(names.begin(), names.end(), name) > 0; };
  m_abilities = Abilities{can("body"), can("body-markup")};
  sendWaiting();
}

void DesktopNotifications::sendWaiting() {
  while (!m_waiting.empty()) {
    const Balloon next = m_waiting.front();
    m_waiting.pop_front();
    send(next);
  }
}

void DesktopNotifications::send(const Balloon& balloon) {
  const std::string text = firstUnits(balloon.text, SystemTray::BALLOON_LENGTH).toUTF8();
  std::string title = firstUnits(balloon.title, SystemTray::TITLE_LENGTH).toUTF8();
  if (!m_abilities->body) // it would show the title alone
    title += ": " + text;
  const Sent sent = m_sent.insert(m_sent.end(), balloon);
  const bool onItsWay = trySend([&] {
    m_service->callMethodAsync("Notify")
        .onInterface(SERVICE)
        .withTimeout(m_answerTimeout)
        .withArguments(APP_NAME.toUTF8(), std::uint32_t(0), std::string(), title,
                       m_abilities->markup ? escaped(text) : text, std::vector<std::string>(),
                       hintsOf(balloon, m_picture), SERVICE_DECIDES)
        .uponReplyInvoke([this, sent](const sdbus::Error* error, std::uint32_t) { answered(sent, !error); });
  });
  if (!onItsWay)
    answered(sent, false);
}

void DesktopNotifications::answered(Sent sent, bool shown) {
  const Balloon balloon = *sent;
  m_sent.erase(sent);
  if (!shown)
    m_notShown(balloon);
}

void DesktopNotifications::giveBackWaiting() {
  std::deque<Balloon> waiting;
  waiting.swap(m_waiting);
  for (const Balloon& balloon : waiting)
    m_notShown(balloon);
}

} // namespace Tallymoor
