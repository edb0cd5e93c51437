#include "views/SharesSoldTable.h"
#include "books/SharePortfolioUser.h"
#include "entry/DeleteSaleDialog.h"
#include "entry/EditSoldShareDialog.h"
#include "foundation/KeptTexts.h"
#include "views/ChangeSentences.h"
#include "views/PortfolioCommands.h"
#include "views/SoldShareCells.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

namespace {

/// A failure to edit is reported in the words of the purchases' table, which users know.
constexpr EventTable::Texts TEXTS{
    u"Shares Sold Table", u"No sales are recorded.\nRecord one by Portfolios, Sell Shares... (Ctrl+L).",
    kept::EDIT_OF_SALE, u"SharesSoldTable::onDelete failed."};

} // namespace

SharesSoldTable::SharesSoldTable(SharePortfolioUser& portfolio, PortfolioCommands& commands,
                                 FXComposite* parent, Watcher* watcher)
    : EventTable(TEXTS, portfolio, commands, parent, watcher) {
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

void SharesSoldTable::addAllEvents() {
  for (XMLSoldShare& stock : portfolio().portfolio().soldShares())
    addEvents(stock.sales());
}

EventTable::PopupLabels SharesSoldTable::popupLabels(const EventRow& row) const {
  const String sale =
      u"sale of " + row.as<XMLSellEvent>().code() + u" from " + row.day.toString(DATE_DISPLAY_LOCAL) + u"...";
  return {u"Edit " + sale, u"Delete " + sale};
}

void SharesSoldTable::deleteEvent(const EventRow& row) {
  const auto& sale = row.as<XMLSellEvent>();
  DeleteSaleDialog dialog(&MainWindow::Instance(), sale);
  if (dialog.execute() == 0)
    return;
  commands().change(u"Deletion of the sale of " + sharesText(sale.number(), sale.code()), [&] {
    if (dialog.givesSharesBack())
      portfolio().undoSale(sale);
    else
      portfolio().deleteSale(sale);
  });
}

void SharesSoldTable::editEvent(const EventRow& row) {
  auto& sale = row.as<XMLSellEvent>();
  EditSoldShareDialog dialog(&MainWindow::Instance(), sale);
  if (dialog.execute() == 0)
    return;
  bool cashFollowed = false;
  commands().change(u"Edit of the sale of " + sharesText(sale.number(), sale.code()),
                    [&] { cashFollowed = portfolio().editSellEvent(sale, dialog.entry()); });
  if (!cashFollowed)
    MainWindow::information(
        u"Please find and edit the corresponding cash deposit and withdrawal for this transaction.");
}

} // namespace Tallymoor
