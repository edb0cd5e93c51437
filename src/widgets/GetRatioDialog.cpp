#include "widgets/GetRatioDialog.h"
#include "widgets/MainWindow.h"
#include "widgets/NumberSpinner.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXIMPLEMENT(GetRatioDialog, GetLongDialog, nullptr, 0)

GetRatioDialog::GetRatioDialog(FXWindow* owner, const String& title, const String& heading,
                               const String& remark, std::int32_t maximum, const WholeRatio& initial)
    : GetLongDialog(owner, title, heading, 1, maximum, initial.first) {
  constexpr FXint COLUMNS = 6;
  new FXLabel(row(), " : ", nullptr, JUSTIFY_LEFT | LAYOUT_CENTER_Y);
  m_second = new NumberSpinner(row(), COLUMNS, 1, maximum, initial.second);
  m_secondValue = m_second->number();
  new FXLabel(row(), toFox(remark), nullptr, JUSTIFY_LEFT | LAYOUT_CENTER_Y);
}

bool GetRatioDialog::validate() {
  if (!GetLongDialog::validate())
    return false;
  if (m_second->isEmpty()) {
    MainWindow::error(u" You must enter a value.");
    return false;
  }
  m_secondValue = m_second->number();
  return true;
}

} // namespace Tallymoor
