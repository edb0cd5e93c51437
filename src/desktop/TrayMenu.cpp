#include "desktop/TrayMenu.h"
#include "desktop/SessionBus.h"
#include <sdbus-c++/sdbus-c++.h>
#include <tuple>

namespace Tallymoor {

namespace {

const std::string INTERFACE = "com.canonical.dbusmenu";
constexpr std::int32_t ROOT = 0;
constexpr std::int32_t FIRST_SEPARATOR = 0x100000; ///< above all identifiers of commands

/// Commands keep their number whatever stands beside them.
std::int32_t numberOf(const std::vector<SystemTray::MenuEntry>& entries, std::size_t index) {
  return entries[index].isSeparator() ? FIRST_SEPARATOR + static_cast<std::int32_t>(index)
                                      : static_cast<std::int32_t>(entries[index].command);
}

/// Panels take "_" for the mark of a key, and a pair for the character itself.
std::string asLabel(const String& text) {
  std::string label;
  for (const char c : text.toUTF8())
    label.append(c == '_' ? 2 : 1, c);
  return label;
}

} // namespace

TrayMenu::TrayMenu(Hooks hooks) : m_hooks(std::move(hooks)) {}

TrayMenu::~TrayMenu() = default;

void TrayMenu::connect(sdbus::IConnection& connection) {
  m_menu = sdbus::createObject(connection, PATH);
  registerProperties();
  registerReading();
  registerEvents();
  m_menu->registerSignal("LayoutUpdated")
      .onInterface(INTERFACE)
      .withParameters<std::uint32_t, std::int32_t>();
  m_menu->finishRegistration();
}

void TrayMenu::disconnect() {
  m_menu.reset();
}

void TrayMenu::registerProperties() {
  m_menu->registerProperty("Version").onInterface(INTERFACE).withGetter([] { return std::uint32_t(3); });
  m_menu->registerProperty("TextDirection").onInterface(INTERFACE).withGetter([] {
    return std::string("ltr");
  });
  m_menu->registerProperty("Status").onInterface(INTERFACE).withGetter([] { return std::string("normal"); });
  m_menu->registerProperty("IconThemePath").onInterface(INTERFACE).withGetter([] {
    return std::vector<std::string>();
  });
}

void TrayMenu::registerReading() {
  m_menu->registerMethod("GetLayout")
      .onInterface(INTERFACE)
      .implementedAs([this](std::int32_t parent, std::int32_t depth, const std::vector<std::string>&) {
        return std::make_tuple(m_revision, layout(parent, depth));
      });
  m_menu->registerMethod("GetGroupProperties")
      .onInterface(INTERFACE)
      .implementedAs([this](const std::vector<std::int32_t>& numbers, const std::vector<std::string>&) {
        return group(numbers);
      });
  m_menu->registerMethod("GetProperty")
      .onInterface(INTERFACE)
      .implementedAs([this](std::int32_t number, const std::string& name) {
        Properties all = properties(number);
        if (!all.contains(name))
          throw sdbus::Error("org.freedesktop.DBus.Error.InvalidArgs", "no such property");
        return all[name];
      });
}

void TrayMenu::registerEvents() {
  m_menu->registerMethod("Event").onInterface(INTERFACE).implementedAs(
      [this](std::int32_t number, const std::string& kind, const sdbus::Variant&, std::uint32_t) {
        happened(number, kind);
      });
  m_menu->registerMethod("EventGroup")
      .onInterface(INTERFACE)
      .implementedAs([this](const std::vector<Event>& events) {
        for (const Event& event : events)
          happened(std::get<0>(event), std::get<1>(event));
        return std::vector<std::int32_t>();
      });
  m_menu->registerMethod("AboutToShow").onInterface(INTERFACE).implementedAs([this](std::int32_t) {
    return tellChange();
  });
  m_menu->registerMethod("AboutToShowGroup")
      .onInterface(INTERFACE)
      .implementedAs([this](const std::vector<std::int32_t>&) {
        std::vector<std::int32_t> changed;
        if (tellChange())
          changed.push_back(ROOT);
        return std::make_tuple(changed, std::vector<std::int32_t>());
      });
}

TrayMenu::Layout TrayMenu::layout(std::int32_t parent, std::int32_t depth) {
  if (parent == ROOT)
    m_told = m_hooks.entries();
  std::vector<sdbus::Variant> children;
  if (parent == ROOT && depth != 0)
    for (std::size_t i = 0; i < m_told.size(); ++i) {
      const std::int32_t number = numberOf(m_told, i);
      children.emplace_back(Layout(number, properties(number), std::vector<sdbus::Variant>()));
    }
  return Layout(parent, properties(parent), children);
}

TrayMenu::Properties TrayMenu::properties(std::int32_t number) {
  Properties properties;
  if (number == ROOT)
    properties["children-display"] = sdbus::Variant(std::string("submenu"));
  for (std::size_t i = 0; i < m_told.size(); ++i)
    if (numberOf(m_told, i) == number) {
      if (m_told[i].isSeparator())
        properties["type"] = sdbus::Variant(std::string("separator"));
      else
        properties["label"] = sdbus::Variant(asLabel(m_told[i].text));
    }
  return properties;
}

TrayMenu::Group TrayMenu::group(const std::vector<std::int32_t>& numbers) {
  Group group;
  for (const std::int32_t number : numbers)
    group.emplace_back(number, properties(number));
  return group;
}

bool TrayMenu::tellChange() {
  if (!m_menu || m_hooks.entries() == m_told)
    return false;
  ++m_revision;
  trySend(
      [this] { m_menu->emitSignal("LayoutUpdated").onInterface(INTERFACE).withArguments(m_revision, ROOT); });
  return true;
}

/// Only what was offered can be chosen.
void TrayMenu::happened(std::int32_t number, const std::string& kind) {
  if (kind != "clicked")
    return;
  for (const SystemTray::MenuEntry& entry : m_told)
    if (!entry.isSeparator() && static_cast<std::int32_t>(entry.command) == number)
      m_hooks.chosen(entry.command);
}

} // namespace Tallymoor
