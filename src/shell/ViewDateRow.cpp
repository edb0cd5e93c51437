#include "shell/ViewDateRow.h"
#include "shell/TallymoorWindow.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(ViewDateRow, FXHorizontalFrame, nullptr, 0)

namespace {

constexpr FXuint BUTTON_STYLE =
    BUTTON_TOOLBAR | FRAME_RAISED | LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT | LAYOUT_CENTER_Y;
constexpr FXint BUTTON_SIZE = 26; ///< fixed, so that nothing moves when an icon comes or goes

void setUp(FXButton& button, FXIcon* icon, const char* tip, const char* help, FXSelector command) {
  button.setIcon(icon);
  button.setTipText(tip);
  button.setHelpText(help);
  button.setSelector(command);
}

} // namespace

ViewDateRow::ViewDateRow(FXComposite* parent, TallymoorWindow& window, WindowIcons& icons)
    : FXHorizontalFrame(parent, LAYOUT_CENTER_Y, 0, 0, 0, 0, 2, 2, 2, 2, 2, 0), m_window(window),
      m_icons(icons) {
  m_forwardWeek = addButton("", nullptr, TallymoorWindow::ID_NO_COMMAND);
  m_forwardDay = addButton("", nullptr, TallymoorWindow::ID_NO_COMMAND);
  m_field = new DateTextField(this, window, TallymoorWindow::ID_DATE_FIELD);
  addButton("\tBack a day\tMove the view date for your capital back a day", icons.backDay.get(),
            TallymoorWindow::ID_BACK);
  addButton("\tBack a week\tMove the view date for your capital back a week", icons.backWeek.get(),
            TallymoorWindow::ID_BBACK);
}

FXButton* ViewDateRow::addButton(const char* text, FXIcon* icon, FXSelector command) {
  return new FXButton(this, text, icon, &m_window, command, BUTTON_STYLE, 0, 0, BUTTON_SIZE, BUTTON_SIZE, 0,
                      0, 0, 0);
}

void ViewDateRow::showToday() {
  for (FXButton* button : {m_forwardWeek, m_forwardDay})
    setUp(*button, nullptr, "", "", TallymoorWindow::ID_NO_COMMAND);
  m_field->showToday();
}

void ViewDateRow::showPast() {
  setUp(*m_forwardWeek, m_icons.forwardWeek.get(), "Forward a week",
        "Move the view date for your capital forward a week", TallymoorWindow::ID_FFORWARD);
  setUp(*m_forwardDay, m_icons.forwardDay.get(), "Forward a day",
        "Move the view date for your capital forward a day", TallymoorWindow::ID_FORWARD);
  m_field->showPast();
}

} // namespace Tallymoor
