#include "views/ShareHeldTable.h"
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioUser.h"
#include "books/SplitTerms.h"
#include "entry/BuySharesPanel.h"
#include "entry/EditHeldSharesDialog.h"
#include "foundation/Amounts.h"
#include "foundation/KeptTexts.h"
#include "views/ChangeSentences.h"
#include "views/HeldShareColumns.h"
#include "views/PortfolioCommands.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

FXDEFMAP(ShareHeldTable)
ShareHeldTableMap[] = {
    FXMAPFUNC(SEL_COMMAND, ShareHeldTable::ID_EDIT, ShareHeldTable::onEdit),
    FXMAPFUNC(SEL_COMMAND, ShareHeldTable::ID_DELETE_PURCHASE, ShareHeldTable::onDeletePurchase),
};

FXIMPLEMENT_ABSTRACT(ShareHeldTable, SharesHeldTable, ShareHeldTableMap, ARRAYNUMBER(ShareHeldTableMap))

namespace {

String shownDate(const XMLBuyEvent& purchase) {
  return purchase.bought().toString(DATE_DISPLAY_LOCAL);
}

} // namespace

ShareHeldTable::ShareHeldTable(SharePortfolioUser& portfolio, const String& code, PortfolioCommands& commands,
                               FXComposite* parent, Watcher* watcher)
    : SharesHeldTable(portfolio, commands, parent, watcher, COMPARE_OLDEST_FIRST, Unfilled()), m_code(code) {
  updateTable();
}

void ShareHeldTable::fillTable() {
  clearShares();
  declarePurchaseColumns(*this);
  XMLHeldShare* held = portfolio().findHeldShare(m_code);
  if (held && portfolio().capitalRecord().hasDayCap(Date()))
    for (XMLBuyEvent& parcel : held->parcels()) {
      HeldShareRow purchase;
      purchase.code = m_code;
      purchase.heldShare = held;
      purchase.buyEvent = &parcel;
      addShare(shownDate(parcel), purchase);
    }
  watchShares();
  rebuild();
}

void ShareHeldTable::markPrice(const String& code) {
  if (code == m_code)
    markAllStale();
}

void ShareHeldTable::rowPopup(const TableClick& click) {
  if (!click.row)
    return;
  setInputRow(click.row);
  ContextMenu menu(this, this);
  menu.addCommand(String(u"Sell ") + m_code + u"...", ID_SELL);
  menu.addCommand(String(u"Buy ") + m_code + u"...", ID_BUY);
  menu.addCommand(u"Price history...", ID_HISTORY);
  menu.addSeparator();
  menu.addCommand(String(u"Edit purchase from ") + click.row->key() + u"...", ID_EDIT);
  menu.addSeparator();
  menu.addCommand(u"Delete from records!...", ID_DELETE_PURCHASE);
  menu.run(click.screenX, click.screenY);
}

void ShareHeldTable::editRow(Row& row) {
  setInputRow(&row);
  onEdit(this, 0, nullptr);
}

long ShareHeldTable::onEdit(FXObject*, FXSelector, void*) {
  return guardedHandler(u"ShareHeldTable::onEdit failed.", [this] {
    if (inputRow())
      editPurchase(*inputRow()->payload<HeldShareRow>().buyEvent);
  });
}

void ShareHeldTable::editPurchase(XMLBuyEvent& purchase) {
  const double oldCost = purchaseCost(purchase);
  const Date oldDate = purchase.bought();
  EditHeldSharesDialog dialog(&MainWindow::Instance(), portfolio(), purchase);
  if (dialog.execute() == 0)
    return;
  const BuySharesPanel& panel = *dialog.panel();
  const double newCost = panel.number() * panel.price() + panel.brokerage();
  bool cashFollowed = false;
  commands().change(u"Edit of the purchase of " + sharesText(purchase.number(), m_code), [&] {
    cashFollowed = portfolio().editBuyEvent(purchase, panel.trade(), oldCost, oldDate);
  });
  if (!cashFollowed && !showsTheSame(newCost, oldCost, 4))
    MainWindow::information(u"Please find and edit the corresponding cash withdrawal for this transaction.");
}

long ShareHeldTable::onDeletePurchase(FXObject*, FXSelector, void*) {
  return guardedHandler(kept::DELETE_OF_PARCEL, [this] {
    if (inputRow())
      deletePurchase(*inputRow()->payload<HeldShareRow>().buyEvent);
  });
}

void ShareHeldTable::deletePurchase(const XMLBuyEvent& purchase) {
  const Date date = purchase.bought();
  if (!MainWindow::question(deletionWarning() + u"Continue to delete the share purchase of " + m_code +
                            u" at " + date.toString(DATE_DISPLAY_LOCAL) + u"?"))
    return;
  const double number = sharesOn(purchase, Date()).number;
  bool cashFollowed = false;
  commands().change(u"Deletion of the purchase of " + sharesText(number, m_code),
                    [&] { cashFollowed = portfolio().deleteBuyEvent(m_code, date, number); });
  if (!cashFollowed)
    MainWindow::error(u"Please find and delete the corresponding cash withdrawal from this transaction.");
}

} // namespace Tallymoor
