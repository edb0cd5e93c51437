#include "entry/EditFloatDialog.h"
#include "books/CashBalance.h"
#include "entry/GetFloatPanel.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

FXIMPLEMENT(EditFloatDialog, GetFloatDialog, nullptr, 0)

EditFloatDialog::EditFloatDialog(FXWindow* owner, const String& title, const String& heading,
                                 const XMLSharePortfolio& portfolio, const XMLCashEvent& cashEvent)
    : GetFloatDialog(owner, title, heading) {
  panel()->setCashBefore(cashBalance(portfolio, Date()) - effectOnBalance(cashEvent, Date()),
                         cashEvent.isCredit());
  panel()->reset(cashEvent.amount(), cashEvent.day());
  panel()->setText(cashEvent.description());
}

} // namespace Tallymoor
