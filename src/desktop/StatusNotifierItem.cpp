#include "desktop/StatusNotifierItem.h"
#include "desktop/SessionBus.h"
#include "desktop/TrayMenu.h"
#include "foundation/Constants.h"
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace Tallymoor {

namespace {

const std::string ITEM_INTERFACE = "org.kde.StatusNotifierItem";
const std::string ITEM_PATH = "/StatusNotifierItem";
const std::string WATCHER = "org.kde.StatusNotifierWatcher";
const std::string WATCHER_PATH = "/StatusNotifierWatcher";

using Pixmap = sdbus::Struct<std::int32_t, std::int32_t, std::vector<std::uint8_t>>;
using Pixmaps = std::vector<Pixmap>;
/// Name of an icon, pictures, title, text.
using ToolTip = sdbus::Struct<std::string, Pixmaps, std::string, std::string>;

Pixmaps pixmapsOf(const TrayPicture& picture) {
  if (picture.width == 0)
    return {};
  return {Pixmap(picture.width, picture.height, picture.argb)};
}

/// As the protocol has it: the process and the number of its item.
std::string itemBusName() {
  return "org.kde.StatusNotifierItem-" + std::to_string(::getpid()) + "-1";
}

} // namespace

StatusNotifierItem::StatusNotifierItem(std::chrono::milliseconds answerTimeout, Hooks hooks)
    : m_answerTimeout(answerTimeout), m_hooks(std::move(hooks)) {}

StatusNotifierItem::~StatusNotifierItem() = default;

void StatusNotifierItem::setPicture(const TrayPicture& picture) {
  m_picture = picture;
  announce("NewIcon");
}

void StatusNotifierItem::setTip(const String& tip) {
  m_tip = tip.toUTF8();
  announce("NewToolTip");
}

void StatusNotifierItem::announce(const std::string& signal) {
  if (m_item)
    trySend([&] { m_item->emitSignal(signal).onInterface(ITEM_INTERFACE); });
}

void StatusNotifierItem::connect(sdbus::IConnection& connection) {
  putOnBus(connection);
  m_busName = itemBusName();
  connection.requestName(m_busName);
  watchForWatcher(connection);
  registerWithWatcher();
}

void StatusNotifierItem::disconnect() {
  m_ownerMatch.reset();
  m_watcher.reset();
  m_item.reset();
  setState(false, false);
}

void StatusNotifierItem::putOnBus(sdbus::IConnection& connection) {
  m_item = sdbus::createObject(connection, ITEM_PATH);
  sdbus::IObject& item = *m_item;
  const auto property = [&item](const std::string& name, auto getter) {
    item.registerProperty(name).onInterface(ITEM_INTERFACE).withGetter(getter);
  };
  const auto constant = [&property](const std::string& name, const std::string& value) {
    property(name, [value] { return value; });
  };
  constant("Category", "ApplicationStatus");
  constant("Id", "tallymoor");
  constant("Title", APP_NAME.toUTF8());
  constant("Status", "Active");
  constant("IconName", "");
  property("WindowId", [] { return std::int32_t(0); });
  property("ItemIsMenu", [] { return false; });
  property("Menu", [] { return sdbus::ObjectPath(TrayMenu::PATH); });
  property("IconPixmap", [this] { return pixmapsOf(m_picture); });
  // Only the title is plain text to every panel; the text below it would be read as markup.
  property("ToolTip", [this] { return ToolTip("", Pixmaps(), m_tip, ""); });

  const auto method = [&item](const std::string& name, const std::function<void()>& hook) {
    item.registerMethod(name).onInterface(ITEM_INTERFACE).implementedAs([hook](std::int32_t, std::int32_t) {
      hook();
    });
  };
  method("Activate", m_hooks.activated);
  method("ContextMenu", m_hooks.menuWanted);
  method("SecondaryActivate", [] {});
  item.registerMethod("Scroll")
      .onInterface(ITEM_INTERFACE)
      .implementedAs([](std::int32_t, const std::string&) {});
  for (const char* signal : {"NewIcon", "NewToolTip"})
    item.registerSignal(signal).onInterface(ITEM_INTERFACE);
  item.finishRegistration();
}

void StatusNotifierItem::watchForWatcher(sdbus::IConnection& connection) {
  m_ownerMatch = connection.addMatch("type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop."
                                     "DBus',member='NameOwnerChanged',arg0='" +
                                         WATCHER + "'",
                                     [this](sdbus::Message& message) {
                                       std::string name, before, now;
                                       message >> name >> before >> now;
                                       watcherChanged(!now.empty());
                                     });
  m_watcher = sdbus::createProxy(connection, WATCHER, WATCHER_PATH);
  for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
    m_watcher->uponSignal(signal).onInterface(WATCHER).call([this] { askForHost(); });
  m_watcher->finishRegistration();
}

void StatusNotifierItem::watcherChanged(bool there) {
  setState(false, false);
  if (there)
    registerWithWatcher();
}

/// Without a watcher the answer is an error, at once.
void StatusNotifierItem::registerWithWatcher() {
  trySend([this] {
    m_watcher->callMethodAsync("RegisterStatusNotifierItem")
        .onInterface(WATCHER)
        .withTimeout(m_answerTimeout)
        .withArguments(m_busName)
        .uponReplyInvoke([this](const sdbus::Error* error) {
          if (error)
            return;
          setState(true, m_hostThere);
          askForHost();
        });
  });
}

void StatusNotifierItem::askForHost() {
  trySend([this] {
    m_watcher->callMethodAsync("Get")
        .onInterface("org.freedesktop.DBus.Properties")
        .withTimeout(m_answerTimeout)
        .withArguments(WATCHER, std::string("IsStatusNotifierHostRegistered"))
        .uponReplyInvoke([this](const sdbus::Error* error, const sdbus::Variant& value) {
          setState(m_registered, !error && value.containsValueOfType<bool>() && value.get<bool>());
        });
  });
}

void StatusNotifierItem::setState(bool registered, bool hostThere) {
  const bool before = shown();
  m_registered = registered;
  m_hostThere = hostThere;
  if (shown() != before)
    m_hooks.shownChanged();
}

} // namespace Tallymoor
