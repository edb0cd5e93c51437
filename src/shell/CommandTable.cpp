#include "shell/CommandTable.h"
#include "foundation/Exception.h"
#include "shell/CommandButton.h"
#include "widgets/HandlerScope.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr FXint GAP_WIDTH = 2;

} // namespace

CommandTable::CommandTable(FXWindow& window, std::vector<Command> commands)
    : m_window(window), m_commands(std::move(commands)) {}

const Command& CommandTable::at(FXuint id) const {
  const auto found = std::find_if(m_commands.begin(), m_commands.end(),
                                  [id](const Command& command) { return command.id == id; });
  if (found == m_commands.end())
    throw Exception(u"CommandTable::at - no command has the number " + String::fromLong(id));
  return *found;
}

long CommandTable::run(FXuint id) const {
  const Command& command = at(id);
  if (!command.run)
    return 0;
  return guardedHandler(String(u"TallymoorWindow::") + command.handler + u" failed.", command.run);
}

long CommandTable::update(FXuint id, FXObject& widget) const {
  const Command& command = at(id);
  const bool usable = !command.isUsable || command.isUsable();
  widget.handle(&m_window, FXSEL(SEL_COMMAND, usable ? FXWindow::ID_ENABLE : FXWindow::ID_DISABLE), nullptr);
  auto* const entry = dynamic_cast<FXMenuCommand*>(&widget);
  if (entry && command.object) {
    const String object = command.object();
    entry->setText(object.empty() ? FXString(command.label) : command.label + (" " + labelText(object)));
  }
  return 1;
}

std::unique_ptr<FXMenuPane> CommandTable::makeMenu(FXMenuBar& bar, const Menu& menu) const {
  auto pane = std::make_unique<FXMenuPane>(&m_window);
  new FXMenuTitle(&bar, menu.title, nullptr, pane.get());
  for (const MenuLine& line : menu.lines) {
    if (line.command == 0) {
      new FXMenuSeparator(pane.get());
      continue;
    }
    const Command& command = at(line.command);
    const FXString label = line.label ? line.label : command.label;
    const FXString key = *command.key ? FXString("\t") + command.key : FXString();
    new FXMenuCommand(pane.get(), label + key, nullptr, &m_window, command.id);
  }
  return pane;
}

void CommandTable::addButtons(FXToolBar& bar, const std::vector<BarButton>& buttons) const {
  for (const BarButton& button : buttons) {
    for (int i = 0; i < button.gaps; ++i)
      new FXFrame(&bar, LAYOUT_FIX_WIDTH, 0, 0, GAP_WIDTH);
    const Command& command = at(button.command);
    new CommandButton(&bar, FXString("\t") + command.tip, command.icon, &m_window, command.id);
  }
}

} // namespace Tallymoor
