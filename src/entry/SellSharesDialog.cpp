#include "entry/SellSharesDialog.h"
#include "entry/SellSharesPanel.h"

namespace Tallymoor {

FXIMPLEMENT(SellSharesDialog, Dialog, nullptr, 0)

SellSharesDialog::SellSharesDialog(FXWindow* owner, const SharePortfolioUser& portfolio,
                                   const String& initialCode)
    : Dialog(owner, u"Sell Shares", u"Specify the share code, date and sell price of a share sale."),
      m_panel(new SellSharesPanel(contents(), &portfolio, initialCode)) {
  setFirstFocus(m_panel->firstField());
}

bool SellSharesDialog::validate() {
  return m_panel->validate();
}

} // namespace Tallymoor
