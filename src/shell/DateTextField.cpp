#include "shell/DateTextField.h"
#include "shell/ViewDateController.h"
#include "widgets/CalendarDialog.h"
#include "widgets/Colours.h"
#include "widgets/HandlerScope.h"
#include "widgets/ToolkitText.h"
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(DateTextField)
DateTextFieldMap[] = {
    FXMAPFUNC(SEL_LEFTBUTTONPRESS, 0, DateTextField::onPress),
    FXMAPFUNC(SEL_LEFTBUTTONRELEASE, 0, DateTextField::onChangeCurrentDate),
    FXMAPFUNC(SEL_KEYPRESS, 0, DateTextField::onKeyPress),
};

FXIMPLEMENT_ABSTRACT(DateTextField, FXTextField, DateTextFieldMap, ARRAYNUMBER(DateTextFieldMap))

namespace {

constexpr FXint COLUMNS = 20;
constexpr FXuint STYLE = TEXTFIELD_READONLY | FRAME_SUNKEN | FRAME_THICK | JUSTIFY_CENTER_X | LAYOUT_CENTER_Y;

/// A warm yellow that no other part of the window has.
FXColor pastTint() {
  return makeColour(255, 170, 0, 130);
}

} // namespace

DateTextField::DateTextField(FXComposite* parent, FXWindow& window, ViewDateController& viewDate,
                             FXSelector selector)
    : FXTextField(parent, COLUMNS, &window, selector, STYLE), m_window(window), m_viewDate(viewDate) {
  setTipText("Click this control to set a date in the past for viewing your capital");
  setHelpText("Viewing Capital at this date");
  setDefaultCursor(getApp()->getDefaultCursor(DEF_HAND_CURSOR));
  showToday();
}

void DateTextField::showToday() {
  setText("View Date: today");
  setBackColor(getApp()->getBackColor());
}

void DateTextField::showPast() {
  setText(toFox(Date().toString(DATE_DISPLAY_LOCAL)));
  setBackColor(pastTint());
}

long DateTextField::onPress(FXObject*, FXSelector, void*) {
  setFocus();
  return 1;
}

long DateTextField::onChangeCurrentDate(FXObject*, FXSelector, void*) {
  return guardedHandler(u"DateTextField::onChangeCurrentDate failed.", [this] {
    CalendarDialog dialog(&m_window, u"Choose the date", Date());
    if (!dialog.execute())
      return;
    if (dialog.date() < Date::realToday())
      m_viewDate.set(dialog.date());
    else
      m_viewDate.reset();
  });
}

long DateTextField::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  switch (static_cast<FXEvent*>(data)->code) {
  case KEY_Return:
  case KEY_KP_Enter:
  case KEY_space:
    return onChangeCurrentDate(sender, selector, data);
  default:
    return FXTextField::onKeyPress(sender, selector, data);
  }
}

} // namespace Tallymoor
