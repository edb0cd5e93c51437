#include "views/SharesSoldTable.h"
#include "books/SharePortfolioUser.h"
#include "entry/DeleteSaleDialog.h"
#include "entry/EditSoldShareDialog.h"
#include "foundation/KeptTexts.h"
#include "views/PortfolioCommands.h"
#include "views/SoldShareCells.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

FXDEFMAP(SharesSoldTable)
SharesSoldTableMap[] = {
    FXMAPFUNC(SEL_COMMAND, SharesSoldTable::ID_DELETE, SharesSoldTable::onDelete),
    FXMAPFUNC(SEL_COMMAND, SharesSoldTable::ID_EDIT, SharesSoldTable::onEdit),
};

FXIMPLEMENT_ABSTRACT(SharesSoldTable, EventTable, SharesSoldTableMap, ARRAYNUMBER(SharesSoldTableMap))

SharesSoldTable::SharesSoldTable(SharePortfolioUser& portfolio, PortfolioCommands& commands,
                                 FXComposite* parent, Watcher* watcher)
    : EventTable(u"Shares Sold Table", portfolio, commands, parent, watcher) {
  updateTable();
}

std::vector<EventTable::ColumnOf> SharesSoldTable::columnsOfEvents() const {
  using namespace SoldShareCells;
  return {{u"Stock Code", &stockCode},
          {u"Name", &SoldShareCells::name, COMPARE_TEXT, FXTableItem::LEFT},
          {u"Num Sold", &numSold, COMPARE_NUMBER},
          {u"Buy Price", &buyPrice, COMPARE_AMOUNT},
          {u"Sell Price", &sellPrice, COMPARE_AMOUNT},
          {u"Gross Cost", &grossCost, COMPARE_AMOUNT},
          {u"Gross Sale", &grossSale, COMPARE_AMOUNT},
          {u"Gross Profit", &grossProfit, COMPARE_AMOUNT},
          {u"Total Brokerage", &totalBrokerage, COMPARE_AMOUNT},
          {u"Net Profit", &netProfit, COMPARE_AMOUNT},
          {u"Gross Gain", &grossGain, COMPARE_PERCENT},
          {u"Net Gain", &netGain, COMPARE_PERCENT},
          {u"Annualised Net Gain", &annualisedNetGain, COMPARE_PERCENT},
          {u"Buy Date", &buyDate, COMPARE_NEWEST_FIRST},
          {u"Sell Date", &sellDate, COMPARE_NEWEST_FIRST},
          {u"Days Held", &daysHeld, COMPARE_NUMBER},
          {u"Comment", &comment, COMPARE_TEXT, FXTableItem::LEFT}};
}

String SharesSoldTable::noEventsText() const {
  return u"No sales are recorded.\nRecord one by Portfolios, Sell Shares... (Ctrl+L).";
}

void SharesSoldTable::addAllEvents() {
  for (XMLSoldShare& stock : portfolio().portfolio().soldShares())
    addEvents(stock.sales());
}

void SharesSoldTable::rowPopup(const TableClick& click) {
  if (!click.row)
    return;
  setInputRow(click.row);
  const String sale =
      u"sale of " + inputEvent<XMLSellEvent>()->code() + u" from " + click.row->key() + u"...";
  eventPopup(click, {u"Edit " + sale, ID_EDIT}, {u"Delete " + sale, ID_DELETE});
}

long SharesSoldTable::onDelete(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharesSoldTable::onDelete failed.", [this] {
    if (const auto* sale = inputEvent<XMLSellEvent>())
      deleteSale(*sale);
  });
}

void SharesSoldTable::deleteSale(const XMLSellEvent& sale) {
  DeleteSaleDialog dialog(&MainWindow::Instance(), sale);
  if (dialog.execute() == 0)
    return;
  // Asked for before the change, here and below, so that the tables are safe whatever the change meets.
  commands().transactionMade();
  if (dialog.givesSharesBack())
    portfolio().undoSale(sale);
  else
    portfolio().deleteSale(sale);
}

// A failure to edit goes by the words of the purchases' table, which users know it by.
long SharesSoldTable::onEdit(FXObject*, FXSelector, void*) {
  return guardedHandler(kept::EDIT_OF_SALE, [this] {
    if (auto* sale = inputEvent<XMLSellEvent>())
      editSale(*sale);
  });
}

void SharesSoldTable::editSale(XMLSellEvent& sale) {
  EditSoldShareDialog dialog(&MainWindow::Instance(), sale);
  if (dialog.execute() == 0)
    return;
  commands().transactionMade();
  if (!portfolio().editSellEvent(sale, dialog.entry()))
    MainWindow::information(
        u"Please find and edit the corresponding cash deposit and withdrawal for this transaction.");
}

} // namespace Tallymoor
