#include "shell/ViewDateRow.h"
#include "shell/CommandTable.h"
#include "shell/TallymoorWindow.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(ViewDateRow, FXHorizontalFrame, nullptr, 0)

namespace {

constexpr FXuint BUTTON_STYLE =
    BUTTON_TOOLBAR | FRAME_RAISED | LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT | LAYOUT_CENTER_Y;
constexpr FXint BUTTON_SIZE = 26; ///< fixed, so that nothing moves when an icon comes or goes

} // namespace

ViewDateRow::ViewDateRow(FXComposite* parent, FXWindow& window, ViewDateController& viewDate,
                         const CommandTable& commands)
    : FXHorizontalFrame(parent, LAYOUT_CENTER_Y, 0, 0, 0, 0, 2, 2, 2, 2, 2, 0), m_window(window),
      m_commands(commands) {
  m_forwardWeek = addButton();
  m_forwardDay = addButton();
  m_field = new DateTextField(this, window, viewDate, TallymoorWindow::ID_DATE_FIELD);
  setUp(*addButton(), TallymoorWindow::ID_BACK);
  setUp(*addButton(), TallymoorWindow::ID_BBACK);
}

FXButton* ViewDateRow::addButton() {
  return new FXButton(this, "", nullptr, &m_window, TallymoorWindow::ID_NO_COMMAND, BUTTON_STYLE, 0, 0,
                      BUTTON_SIZE, BUTTON_SIZE, 0, 0, 0, 0);
}

void ViewDateRow::setUp(FXButton& button, FXuint id) {
  const Command& command = m_commands.at(id);
  const FXString texts = command.tip;
  button.setIcon(command.icon);
  button.setTipText(texts.section('\t', 0));
  button.setHelpText(texts.section('\t', 1));
  button.setSelector(id);
}

void ViewDateRow::showToday() {
  for (FXButton* button : {m_forwardWeek, m_forwardDay}) {
    button->setIcon(nullptr);
    button->setTipText(FXString());
    button->setHelpText(FXString());
    button->setSelector(TallymoorWindow::ID_NO_COMMAND);
  }
  m_field->showToday();
}

void ViewDateRow::showPast() {
  setUp(*m_forwardWeek, TallymoorWindow::ID_FFORWARD);
  setUp(*m_forwardDay, TallymoorWindow::ID_FORWARD);
  m_field->showPast();
}

} // namespace Tallymoor
