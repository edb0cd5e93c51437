#include "entry/ReceiveDividendsDialog.h"
#include "entry/ReceiveDividendsPanel.h"

namespace Tallymoor {

FXIMPLEMENT(ReceiveDividendsDialog, Dialog, nullptr, 0)

ReceiveDividendsDialog::ReceiveDividendsDialog(FXWindow* owner, const SharePortfolioUser& portfolio,
                                               const String& initialCode)
    : Dialog(owner, u"Receive a dividend",
             u"Specify the share code, date and amount of the dividend received."),
      m_panel(new ReceiveDividendsPanel(contents(), &portfolio, initialCode)) {
  setFirstFocus(m_panel->firstField());
}

bool ReceiveDividendsDialog::validate() {
  return m_panel->validate();
}

} // namespace Tallymoor
