#include "widgets/GetLongDialog.h"
#include "widgets/MainWindow.h"
#include "widgets/NumberSpinner.h"

namespace Tallymoor {

FXIMPLEMENT(GetLongDialog, Dialog, nullptr, 0)

GetLongDialog::GetLongDialog(FXWindow* owner, const String& title, const String& heading,
                             std::int32_t minimum, std::int32_t maximum, std::int32_t initial)
    : Dialog(owner, title, heading) {
  constexpr FXint COLUMNS = 12;
  m_row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0);
  new FXLabel(m_row, "Value: ", nullptr, JUSTIFY_LEFT | LAYOUT_CENTER_Y);
  m_spinner = new NumberSpinner(m_row, COLUMNS, minimum, maximum, initial);
  m_value = m_spinner->number();
  m_spinner->field()->selectAll();
  setFirstFocus(m_spinner->field());
}

bool GetLongDialog::validate() {
  if (m_spinner->isEmpty()) {
    MainWindow::error(u" You must enter a value.");
    return false;
  }
  m_value = m_spinner->number();
  return true;
}

} // namespace Tallymoor
