#include "entry/BuySharesDialog.h"
#include "entry/BuySharesPanel.h"

namespace Tallymoor {

FXIMPLEMENT(BuySharesDialog, Dialog, nullptr, 0)

BuySharesDialog::BuySharesDialog(FXWindow* owner, const SharePortfolioUser& portfolio,
                                 const String& initialCode)
    : Dialog(owner, u"Buy Shares", u"Specify the share code, date and buy price of a share purchase."),
      m_panel(new BuySharesPanel(contents(), &portfolio)) {
  m_panel->reset(initialCode);
  setFirstFocus(m_panel->firstField());
}

bool BuySharesDialog::validate() {
  return m_panel->validate();
}

} // namespace Tallymoor
