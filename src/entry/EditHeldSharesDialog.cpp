#include "entry/EditHeldSharesDialog.h"
#include "books/CashBalance.h"
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioUser.h"
#include "entry/BuySharesPanel.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

FXIMPLEMENT(EditHeldSharesDialog, Dialog, nullptr, 0)

namespace {

String captionFor(const String& code, const Date& date) {
  return u"Edit share purchase for " + code + u" on " + date.toString(DATE_DISPLAY_LOCAL);
}

/// What would be in the cash reserve now; nothing where the purchase has no entry there.
std::optional<double> cashWithout(const XMLSharePortfolio& portfolio, const XMLBuyEvent& buyEvent) {
  const double cost = purchaseCost(buyEvent);
  const CashEntryKey key{buyEvent.boughtLeaf().value(), moneyText(cost), CASH_EVENT_DEBIT, buyEvent.code()};
  if (!findCashEntry(portfolio, key))
    return std::nullopt;
  return cashBalance(portfolio, Date()) + cost;
}

} // namespace

EditHeldSharesDialog::EditHeldSharesDialog(FXWindow* owner, const SharePortfolioUser& portfolio,
                                           const XMLBuyEvent& buyEvent)
    : Dialog(owner, captionFor(buyEvent.code(), buyEvent.bought()), String()),
      m_panel(new BuySharesPanel(contents(), &portfolio)) {
  m_panel->showPurchase(
      buyEvent.code(),
      {buyEvent.bought(), buyEvent.number(), buyEvent.price(), buyEvent.brokerage(), buyEvent.comment()},
      cashWithout(portfolio.portfolio(), buyEvent));
  setFirstFocus(m_panel->firstField());
}

bool EditHeldSharesDialog::validate() {
  return m_panel->validate();
}

} // namespace Tallymoor
