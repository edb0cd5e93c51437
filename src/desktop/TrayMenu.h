#pragma once
#include "desktop/SystemTray.h"
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <sdbus-c++/IConnection.h>
#include <sdbus-c++/IObject.h>
#include <sdbus-c++/Types.h>
#include <string>
#include <vector>

namespace Tallymoor {

/// The icon's popup for panels that show it themselves: they read its entries from the session bus
/// (com.canonical.dbusmenu) and tell which one was chosen.
///
/// GUI thread only.
class TrayMenu {
public:
  struct Hooks {
    std::function<std::vector<SystemTray::MenuEntry>()> entries; ///< as they are now
    /// Called in the middle of a message from the bus: note it, and return.
    std::function<void(unsigned)> chosen;
  };
  static constexpr const char* PATH = "/MenuBar";

  explicit TrayMenu(Hooks hooks);
  ~TrayMenu();
  /// Throws sdbus::Error. The connection outlives what stands on it: disconnect before it goes.
  void connect(sdbus::IConnection& connection);
  void disconnect();
  /// Tells the panels when the entries are no longer those that they know; true when that is so.
  bool tellChange();

private:
  using Properties = std::map<std::string, sdbus::Variant>;
  /// Number of the entry, its properties, the entries below it.
  using Layout = sdbus::Struct<std::int32_t, Properties, std::vector<sdbus::Variant>>;
  using Group = std::vector<sdbus::Struct<std::int32_t, Properties>>;
  /// Number, kind, data, time.
  using Event = sdbus::Struct<std::int32_t, std::string, sdbus::Variant, std::uint32_t>;

  void registerProperties();
  void registerReading();
  void registerEvents();
  Layout layout(std::int32_t parent, std::int32_t depth);
  Properties properties(std::int32_t number);
  Group group(const std::vector<std::int32_t>& numbers);
  void happened(std::int32_t number, const std::string& kind);

  const Hooks m_hooks;
  std::unique_ptr<sdbus::IObject> m_menu;
  std::vector<SystemTray::MenuEntry> m_told; ///< what panels know
  std::uint32_t m_revision = 1;
};

} // namespace Tallymoor
