#include "views/DividendsTable.h"
#include "analysis/DividendFigures.h"
#include "books/SharePortfolioUser.h"
#include "entry/EditDividendsDialog.h"
#include "entry/ReceiveDividendsPanel.h"
#include "views/DividendCells.h"
#include "views/PortfolioCommands.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

FXDEFMAP(DividendsTable)
DividendsTableMap[] = {
    FXMAPFUNC(SEL_COMMAND, DividendsTable::ID_DELETE, DividendsTable::onDelete),
    FXMAPFUNC(SEL_COMMAND, DividendsTable::ID_EDIT, DividendsTable::onEdit),
};

FXIMPLEMENT_ABSTRACT(DividendsTable, EventTable, DividendsTableMap, ARRAYNUMBER(DividendsTableMap))

namespace {

/// "dividend <word> ABC.AX on 3/03/2026"
String named(const XMLDividendEvent& dividend, const String& word) {
  return u"dividend " + word + u" " + dividend.code() + u" on " +
         dividend.received().toString(DATE_DISPLAY_LOCAL);
}

} // namespace

DividendsTable::DividendsTable(SharePortfolioUser& portfolio, PortfolioCommands& commands,
                               FXComposite* parent, Watcher* watcher)
    : EventTable(u"Dividends Table", portfolio, commands, parent, watcher) {
  updateTable();
}

std::vector<EventTable::ColumnOf> DividendsTable::columnsOfEvents() const {
  using namespace DividendCells;
  constexpr FXuint LEFT = FXTableItem::LEFT;
  constexpr FXuint RIGHT = FXTableItem::RIGHT;
  constexpr FXuint CENTRED = 0;
  return {{u"Code", &code, COMPARE_TEXT, LEFT, true, EVENT_ALONE},
          {u"Name", &DividendCells::name, COMPARE_TEXT, LEFT},
          {u"On Num Held", &onNumHeld, COMPARE_NUMBER, RIGHT, true, EVENT_ALONE},
          {u"Rate", &rate, COMPARE_NUMBER, RIGHT, true, EVENT_ALONE},
          {u"Value", &value, COMPARE_AMOUNT, RIGHT, true, EVENT_ALONE},
          {u"% Franked", &percentFranked, COMPARE_PERCENT, RIGHT, true, EVENT_ALONE},
          {u"Franking Credit", &frankingCreditOf, COMPARE_AMOUNT, RIGHT, true, EVENT_ALONE},
          {u"Received As", &receivedAs, COMPARE_TEXT, CENTRED, true, EVENT_ALONE},
          {u"Foreign Source", &foreignSource, COMPARE_TEXT, CENTRED, false, EVENT_ALONE},
          {u"Withholding Tax", &withholdingTax, COMPARE_AMOUNT, RIGHT, false, EVENT_ALONE}};
}

String DividendsTable::noEventsText() const {
  return u"No dividends are recorded.\nRecord one by Portfolios, Receive a Dividend... (Ctrl+D).";
}

void DividendsTable::addAllEvents() {
  addEvents(portfolio().portfolio().dividends());
}

void DividendsTable::rowPopup(const TableClick& click) {
  if (!click.row)
    return;
  setInputRow(click.row);
  eventPopup(click, {u"Edit " + named(*inputEvent<XMLDividendEvent>(), u"for") + u"...", ID_EDIT},
             {u"Delete from records!...", ID_DELETE});
}

long DividendsTable::onDelete(FXObject*, FXSelector, void*) {
  return guardedHandler(u"DividendsTable::onDelete failed.", [this] {
    if (const auto* dividend = inputEvent<XMLDividendEvent>())
      deleteDividend(*dividend);
  });
}

void DividendsTable::deleteDividend(const XMLDividendEvent& dividend) {
  if (!MainWindow::question(u"Delete " + named(dividend, u"of") + u"?"))
    return;
  const bool reinvested = DividendFigures(dividend).isReinvested();
  // Asked for before the change, here and below, so that the tables are safe whatever the change meets, and
  // under the box.
  commands().transactionMade();
  if (portfolio().deleteDividend(dividend))
    return;
  MainWindow::error(reinvested
                        ? u"Please find and delete the corresponding reinvested shares from this dividend."
                        : u"Please find and delete the corresponding cash deposit from this transaction.");
}

long DividendsTable::onEdit(FXObject*, FXSelector, void*) {
  return guardedHandler(u"DividendsTable::onEdit failed.", [this] {
    if (auto* dividend = inputEvent<XMLDividendEvent>())
      editDividend(*dividend);
  });
}

void DividendsTable::editDividend(XMLDividendEvent& dividend) {
  const bool reinvested = DividendFigures(dividend).isReinvested();
  const double oldShares = dividend.drpShares();
  const double oldSharePrice = dividend.drpRate();
  const double oldCash = reinvested ? 0.0 : DividendFigures(dividend).value();
  const Date oldDate = dividend.received();
  EditDividendsDialog dialog(&MainWindow::Instance(), portfolio(), dividend);
  if (dialog.execute() == 0)
    return;
  const ReceiveDividendsPanel& panel = *dialog.panel();
  commands().transactionMade();
  if (portfolio().editDividend(dividend, panel.entry(), oldShares, oldSharePrice, oldCash, oldDate))
    return;
  MainWindow::error(
      reinvested ? u"Please find and edit the corresponding reinvested held shares from this transaction."
                 : u"Please find and edit the corresponding cash deposit from this transaction.");
}

} // namespace Tallymoor
