#pragma once
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <vector>

namespace Tallymoor {

/// A desktop's panel: the watcher of status notifier items, with a host that shows them or without. It
/// stands on a connection of its own, and does something only while serve() is called; one that is not
/// served hangs.
class TestPanel {
public:
  using Pixmap = sdbus::Struct<std::int32_t, std::int32_t, std::vector<std::uint8_t>>;
  using ToolTip = sdbus::Struct<std::string, std::vector<Pixmap>, std::string, std::string>;

  explicit TestPanel(const std::string& address, bool hostThere = true);
  void serve();
  /// Tells it as a host does that comes or goes.
  void setHost(bool there);

  /// Bus names of the items, in the order of coming.
  const std::vector<std::string>& items() const { return m_items; }
  /// Signals of the last item since it came.
  const std::vector<std::string>& signals() const { return m_signals; }
  /// Asks the last item for a property; served until it is there, with the other side's loop in between.
  void ask(const std::string& property);
  const std::optional<sdbus::Variant>& answer() const { return m_answer; }
  /// Calls a method of the last item as a click on it does.
  void click(const std::string& method);
  /// Reads the item's popup anew, as before it is shown.
  void readMenu();
  /// Its lines, "-" for a separator; nothing until it was read.
  const std::optional<std::vector<std::string>>& menu() const { return m_menu; }
  unsigned menuChanges() const { return m_menuChanges; }
  /// Asks whether the popup has changed since it was read.
  void askMenuChanged();
  const std::optional<bool>& menuChanged() const { return m_menuChanged; }
  /// Chooses a line by its text; a number in its place sends that.
  void choose(const std::string& line);
  void chooseNumber(std::int32_t number);
  unsigned clicksAnswered() const { return m_clicksAnswered; }
  /// True while a name is on the bus.
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
  unsigned m_clicksAnswered = 0;
  std::unique_ptr<sdbus::IProxy> m_itemMenu;
  std::optional<std::vector<std::string>> m_menu;
  std::map<std::string, std::int32_t> m_numbers; ///< of the menu's lines
  unsigned m_menuChanges = 0;
  std::optional<bool> m_menuChanged;
};

/// A desktop's notification service; served as the panel is.
class TestNotifications {
public:
  struct Notice {
    std::string application, title, text;
    int urgency;
    bool hasPicture;
  };

  TestNotifications(const std::string& address, const std::vector<std::string>& abilities);
  /// Gives its name back before it leaves, so that the next service finds it free.
  ~TestNotifications();
  void serve();
  /// Bus name of the program that last asked for something.
  const std::string& client() const { return m_client; }
  /// Asks a program on the bus for a sign of life. The bus keeps the order: once it is answered, the program
  /// has dealt with all that this service sent before.
  void ping(const std::string& client);
  bool pingAnswered() const { return m_pingAnswered; }
  const std::vector<Notice>& notices() const { return m_notices; }
  unsigned timesAsked() const { return m_timesAsked; }
  /// From now on every balloon is answered by an error.
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
