#include "widgets/GetLongDialog.h"
#include "widgets/MainWindow.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(GetLongDialog)
GetLongDialogMap[] = {
    FXMAPFUNC(SEL_KEYPRESS, 0, GetLongDialog::onKeyPress),
};

FXIMPLEMENT(GetLongDialog, Dialog, GetLongDialogMap, ARRAYNUMBER(GetLongDialogMap))

GetLongDialog::GetLongDialog(FXWindow* owner, const String& title, const String& heading,
                             std::int32_t minimum, std::int32_t maximum, std::int32_t initial)
    : Dialog(owner, title, heading), m_minimum(minimum), m_maximum(std::max(minimum, maximum)),
      m_value(std::clamp(initial, m_minimum, m_maximum)) {
  auto* row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0);
  new FXLabel(row, "Value: ", nullptr, JUSTIFY_LEFT | LAYOUT_CENTER_Y);
  m_spinner = new FXSpinner(row, 12, nullptr, 0, SPIN_NORMAL | FRAME_SUNKEN | FRAME_THICK);
  m_spinner->setRange(m_minimum, m_maximum);
  m_spinner->setValue(m_value);
  m_field = dynamic_cast<FXTextField*>(m_spinner->getFirst());
  m_field->setFocus();
  m_field->selectAll();
}

bool GetLongDialog::validate() {
  const String typed = fromFox(m_field->getText()).trimmed();
  if (typed.empty()) {
    MainWindow::error(u" You must enter a value.");
    return false;
  }
  m_value = std::clamp(typed.toLong(), m_minimum, m_maximum);
  return true;
}

long GetLongDialog::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const auto code = static_cast<FXEvent*>(data)->code;
  const bool enter = code == KEY_Return || code == KEY_KP_Enter;
  // The spinner's own field would swallow the key.
  if (enter && m_field->hasFocus())
    return handle(this, FXSEL(SEL_COMMAND, ID_ACCEPT), nullptr);
  return Dialog::onKeyPress(sender, selector, data);
}

} // namespace Tallymoor
