#pragma once
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <vector>

namespace Tallymoor {

/// A desktop panel: the watcher of status notifier items, with or without a host that shows them. Has its own
/// connection and works only inside serve(), so an unserved panel is a hanging one.
class TestPanel {
public:
  using Pixmap = sdbus::Struct<std::int32_t, std::int32_t, std::vector<std::uint8_t>>;
  using ToolTip = sdbus::Struct<std::string, std::vector<Pixmap>, std::string, std::string>;

  explicit TestPanel(const std::string& address, bool hostThere = true);
  void serve();
  /// Announces that a host has come or gone.
  void setHost(bool there);

  /// Bus names of the items, in order of registration.
  const std::vector<std::string>& items() const { return m_items; }
  /// Signals of the last item since its registration.
  const std::vector<std::string>& signals() const { return m_signals; }
  /// Requests a property of the last item. The answer arrives while both sides are served.
  void ask(const std::string& property);
  const std::optional<sdbus::Variant>& answer() const { return m_answer; }
  /// Calls a method of the last item, as a click does.
  void click(const std::string& method);
  /// Reads the item's popup, as a panel does before showing it.
  void readMenu();
  /// The popup's lines, "-" for a separator. Empty until it was read.
  const std::optional<std::vector<std::string>>& menu() const { return m_menu; }
  unsigned menuChanges() const { return m_menuChanges; }
  /// Asks whether the popup has changed since it was read.
  void askMenuChanged();
  const std::optional<bool>& menuChanged() const { return m_menuChanged; }
  /// Selects a line by its text, or by its identifier if the text is a number.
  void choose(const std::string& line);
  void chooseNumber(std::int32_t number);
  unsigned clicksAnswered() const { return m_clicksAnswered; }
  /// True once the item has answered every click, those on lines of its popup included. An answer may belong
  /// to an earlier click than the last one.
  bool allClicksAnswered() const { return m_clicksAnswered == m_clicks; }
  /// True if the name has an owner on the bus.
  bool owned(const std::string& name);

private:
  using Properties = std::map<std::string, sdbus::Variant>;
  using MenuLayout = sdbus::Struct<std::int32_t, Properties, std::vector<sdbus::Variant>>;

  void itemCame(const std::string& name);
  void menuRead(const MenuLayout& layout);

  std::unique_ptr<sdbus::IConnection> m_connection;
  std::unique_ptr<sdbus::IObject> m_watcher;
  std::unique_ptr<sdbus::IProxy> m_item;
  bool m_hostThere;
  std::vector<std::string> m_items;
  std::vector<std::string> m_signals;
  std::optional<sdbus::Variant> m_answer;
  unsigned m_clicks = 0;
  unsigned m_clicksAnswered = 0;
  std::unique_ptr<sdbus::IProxy> m_itemMenu;
  std::optional<std::vector<std::string>> m_menu;
  std::map<std::string, std::int32_t> m_numbers; ///< Identifiers of the menu's lines.
  unsigned m_menuChanges = 0;
  std::optional<bool> m_menuChanged;
};

/// A desktop's notification service. Works only inside serve(), like the panel.
class TestNotifications {
public:
  struct Notice {
    std::string application, title, text;
    int urgency;
    bool hasPicture;
  };

  TestNotifications(const std::string& address, const std::vector<std::string>& abilities);
  /// Releases its bus name first, so that the next service can take it.
  ~TestNotifications();
  void serve();
  /// Bus name of the last client.
  const std::string& client() const { return m_client; }
  /// Pings a client. The bus preserves the order, so the reply means that the client has handled everything
  /// this service sent before.
  void ping(const std::string& client);
  bool pingAnswered() const { return m_pingAnswered; }
  const std::vector<Notice>& notices() const { return m_notices; }
  unsigned timesAsked() const { return m_timesAsked; }
  /// Answers every notification with an error from now on.
  void refuse() { m_refuses = true; }

private:
  std::unique_ptr<sdbus::IConnection> m_connection;
  std::unique_ptr<sdbus::IObject> m_service;
  std::unique_ptr<sdbus::IProxy> m_pinged;
  std::vector<Notice> m_notices;
  std::string m_client;
  bool m_pingAnswered = false;
  unsigned m_timesAsked = 0;
  bool m_refuses = false;
};

} // namespace Tallymoor
