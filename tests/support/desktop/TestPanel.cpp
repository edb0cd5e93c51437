#include "support/desktop/TestPanel.h"

namespace Tallymoor {

namespace {

const std::string WATCHER = "org.kde.StatusNotifierWatcher";
const std::string ITEM = "org.kde.StatusNotifierItem";
const std::string MENU = "com.canonical.dbusmenu";
const std::string NOTIFICATIONS = "org.freedesktop.Notifications";

} // namespace

TestPanel::TestPanel(const std::string& address, bool hostThere)
    : m_connection(sdbus::createSessionBusConnectionWithAddress(address)), m_hostThere(hostThere) {
  m_watcher = sdbus::createObject(*m_connection, "/StatusNotifierWatcher");
  m_watcher->registerMethod("RegisterStatusNotifierItem")
      .onInterface(WATCHER)
      .implementedAs([this](const std::string& name) { itemCame(name); });
  m_watcher->registerProperty("IsStatusNotifierHostRegistered").onInterface(WATCHER).withGetter([this] {
    return m_hostThere;
  });
  m_watcher->registerSignal("StatusNotifierHostRegistered").onInterface(WATCHER);
  m_watcher->registerSignal("StatusNotifierHostUnregistered").onInterface(WATCHER);
  m_watcher->finishRegistration();
  m_connection->requestName(WATCHER);
}

void TestPanel::serve() {
  while (m_connection->processPendingRequest())
    ;
}

void TestPanel::setHost(bool there) {
  m_hostThere = there;
  m_watcher->emitSignal(there ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered")
      .onInterface(WATCHER);
}

void TestPanel::itemCame(const std::string& name) {
  m_items.push_back(name);
  m_signals.clear();
  m_item = sdbus::createProxy(*m_connection, name, "/StatusNotifierItem");
  for (const std::string signal : {"NewIcon", "NewToolTip"})
    m_item->uponSignal(signal).onInterface(ITEM).call([this, signal] { m_signals.push_back(signal); });
  m_item->finishRegistration();
  m_itemMenu = sdbus::createProxy(*m_connection, name, "/MenuBar");
  m_itemMenu->uponSignal("LayoutUpdated").onInterface(MENU).call([this](std::uint32_t, std::int32_t) {
    ++m_menuChanges;
  });
  m_itemMenu->finishRegistration();
}

void TestPanel::ask(const std::string& property) {
  m_answer.reset();
  m_item->callMethodAsync("Get")
      .onInterface("org.freedesktop.DBus.Properties")
      .withArguments(ITEM, property)
      .uponReplyInvoke([this](const sdbus::Error* error, const sdbus::Variant& value) {
        if (!error)
          m_answer = value;
      });
}

void TestPanel::click(const std::string& method) {
  ++m_clicks;
  m_item->callMethodAsync(method)
      .onInterface(ITEM)
      .withArguments(std::int32_t(10), std::int32_t(20))
      .uponReplyInvoke([this](const sdbus::Error* error) {
        if (!error)
          ++m_clicksAnswered;
      });
}

void TestPanel::readMenu() {
  m_menu.reset();
  m_itemMenu->callMethodAsync("GetLayout")
      .onInterface(MENU)
      .withArguments(std::int32_t(0), std::int32_t(-1), std::vector<std::string>())
      .uponReplyInvoke([this](const sdbus::Error* error, std::uint32_t, const MenuLayout& layout) {
        if (!error)
          menuRead(layout);
      });
}

void TestPanel::menuRead(const MenuLayout& layout) {
  m_menu.emplace();
  m_numbers.clear();
  for (const sdbus::Variant& child : std::get<2>(layout)) {
    const auto line = child.get<MenuLayout>();
    const Properties& properties = std::get<1>(line);
    const bool separator = properties.contains("type");
    m_menu->push_back(separator ? "-" : properties.at("label").get<std::string>());
    m_numbers[m_menu->back()] = std::get<0>(line);
  }
}

void TestPanel::askMenuChanged() {
  m_menuChanged.reset();
  m_itemMenu->callMethodAsync("AboutToShow")
      .onInterface(MENU)
      .withArguments(std::int32_t(0))
      .uponReplyInvoke([this](const sdbus::Error* error, bool changed) {
        if (!error)
          m_menuChanged = changed;
      });
}

void TestPanel::choose(const std::string& line) {
  chooseNumber(m_numbers.at(line));
}

void TestPanel::chooseNumber(std::int32_t number) {
  ++m_clicks;
  m_itemMenu->callMethodAsync("Event")
      .onInterface(MENU)
      .withArguments(number, std::string("clicked"), sdbus::Variant(std::int32_t(0)), std::uint32_t(0))
      .uponReplyInvoke([this](const sdbus::Error* error) {
        if (!error)
          ++m_clicksAnswered;
      });
}

bool TestPanel::owned(const std::string& name) {
  bool there = false;
  sdbus::createProxy(*m_connection, "org.freedesktop.DBus", "/org/freedesktop/DBus")
      ->callMethod("NameHasOwner")
      .onInterface("org.freedesktop.DBus")
      .withArguments(name)
      .storeResultsTo(there);
  return there;
}

TestNotifications::TestNotifications(const std::string& address, const std::vector<std::string>& abilities)
    : m_connection(sdbus::createSessionBusConnectionWithAddress(address)) {
  m_service = sdbus::createObject(*m_connection, "/org/freedesktop/Notifications");
  m_service->registerMethod("GetCapabilities").onInterface(NOTIFICATIONS).implementedAs([this, abilities] {
    ++m_timesAsked;
    m_client = m_service->getCurrentlyProcessedMessage()->getSender();
    return abilities;
  });
  m_service->registerMethod("Notify")
      .onInterface(NOTIFICATIONS)
      .implementedAs([this](const std::string& application, std::uint32_t, const std::string&,
                            const std::string& title, const std::string& text,
                            const std::vector<std::string>&,
                            const std::map<std::string, sdbus::Variant>& hints, std::int32_t) {
        if (m_refuses)
          throw sdbus::Error("org.freedesktop.Notifications.Error", "no room");
        m_notices.push_back({application, title, text, hints.at("urgency").get<std::uint8_t>(),
                             hints.contains("image-data")});
        return static_cast<std::uint32_t>(m_notices.size());
      });
  m_service->finishRegistration();
  m_connection->requestName(NOTIFICATIONS);
}

TestNotifications::~TestNotifications() {
  m_connection->releaseName(NOTIFICATIONS);
}

void TestNotifications::ping(const std::string& client) {
  m_pingAnswered = false;
  m_pinged = sdbus::createProxy(*m_connection, client, "/");
  m_pinged->callMethodAsync("Ping")
      .onInterface("org.freedesktop.DBus.Peer")
      .uponReplyInvoke([this](const sdbus::Error* error) { m_pingAnswered = !error; });
}

void TestNotifications::serve() {
  while (m_connection->processPendingRequest())
    ;
}

} // namespace Tallymoor
