#pragma once
#include "foundation/String.h"
#include <functional>
#include <fx.h>
#include <memory>
#include <vector>

namespace Tallymoor {

/// A command of the main window: all that its menu entries, its button and its key need.
struct Command {
  FXuint id = 0;
  const char* label = "";              ///< of its menu entry, with "&" before its letter
  const char* key = "";                ///< as in "Ctrl+P"; empty if it has none
  const char* tip = "";                ///< of its button: the tip, a tab, the line of help
  FXIcon* icon = nullptr;              ///< of its button; not owned
  const char16_t* handler = u"";       ///< what a failure is told with, as in "onBuy"
  std::function<void()> run = {};      ///< empty: the toolkit's own window does it
  std::function<bool()> isUsable = {}; ///< empty: always
  std::function<String()> object = {}; ///< what it would be done to, shown behind the label; empty: nothing
};

/// The commands of a window, each described once. Menus and tool bars are made of them, and their widgets are
/// greyed while their command can't be used. The commands go to the window, which passes them to run() and
/// update(). GUI thread only.
class CommandTable {
public:
  /// A line of a menu: a command, which may have another label there, or a separator, which has none.
  struct MenuLine {
    FXuint command = 0;
    const char* label = nullptr;
  };
  struct Menu {
    const char* title;
    std::vector<MenuLine> lines;
  };
  /// A button of a tool bar, and how many gaps stand before it.
  struct BarButton {
    FXuint command;
    int gaps = 0;
  };

  /// The window outlives the widgets that are made here.
  CommandTable(FXWindow& window, std::vector<Command> commands);

  /// Throws Exception when there is no such command.
  const Command& at(FXuint id) const;
  /// Does the command, and tells the user of a failure. 0 when there is nothing to do for it here.
  long run(FXuint id) const;
  /// Greys the widget of a command, or makes it usable again.
  long update(FXuint id, FXObject& widget) const;

  /// Adds a menu to the bar. The pane must go before the window does.
  std::unique_ptr<FXMenuPane> makeMenu(FXMenuBar& bar, const Menu& menu) const;
  /// While the icons are not on the display yet.
  void addButtons(FXToolBar& bar, const std::vector<BarButton>& buttons) const;

private:
  FXWindow& m_window;
  std::vector<Command> m_commands;
};

} // namespace Tallymoor
