#include "views/DividendsTable.h"
#include "analysis/DividendFigures.h"
#include "books/SharePortfolioUser.h"
#include "entry/EditDividendsDialog.h"
#include "entry/ReceiveDividendsPanel.h"
#include "views/DividendCells.h"
#include "views/PortfolioCommands.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

namespace {

constexpr EventTable::Texts TEXTS{
    u"Dividends Table",
    u"No dividends are recorded.\nRecord one by Portfolios, Receive a Dividend... (Ctrl+D).",
    u"DividendsTable::onEdit failed.", u"DividendsTable::onDelete failed."};

/// "dividend <word> ABC.AX on 3/03/2026"
String named(const XMLDividendEvent& dividend, const String& word) {
  return u"dividend " + word + u" " + dividend.code() + u" on " +
         dividend.received().toString(DATE_DISPLAY_LOCAL);
}

} // namespace

DividendsTable::DividendsTable(SharePortfolioUser& portfolio, PortfolioCommands& commands,
                               FXComposite* parent, Watcher* watcher)
    : EventTable(TEXTS, portfolio, commands, parent, watcher) {
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

void DividendsTable::addAllEvents() {
  addEvents(portfolio().portfolio().dividends());
}

EventTable::PopupLabels DividendsTable::popupLabels(const EventRow& row) const {
  return {u"Edit " + named(row.as<XMLDividendEvent>(), u"for") + u"...", u"Delete from records!..."};
}

void DividendsTable::deleteEvent(const EventRow& row) {
  const auto& dividend = row.as<XMLDividendEvent>();
  if (!MainWindow::question(u"Delete " + named(dividend, u"of") + u"?"))
    return;
  const bool reinvested = DividendFigures(dividend).isReinvested();
  bool otherFollowed = false;
  commands().change(u"Deletion of the dividend of " + dividend.code(),
                    [&] { otherFollowed = portfolio().deleteDividend(dividend); });
  if (otherFollowed)
    return;
  MainWindow::error(reinvested
                        ? u"Please find and delete the corresponding reinvested shares from this dividend."
                        : u"Please find and delete the corresponding cash deposit from this transaction.");
}

void DividendsTable::editEvent(const EventRow& row) {
  auto& dividend = row.as<XMLDividendEvent>();
  const bool reinvested = DividendFigures(dividend).isReinvested();
  const double oldShares = dividend.drpShares();
  const double oldSharePrice = dividend.drpRate();
  const double oldCash = reinvested ? 0.0 : DividendFigures(dividend).value();
  const Date oldDate = dividend.received();
  EditDividendsDialog dialog(&MainWindow::Instance(), portfolio(), dividend);
  if (dialog.execute() == 0)
    return;
  const ReceiveDividendsPanel& panel = *dialog.panel();
  bool otherFollowed = false;
  commands().change(u"Edit of the dividend of " + dividend.code(), [&] {
    otherFollowed =
        portfolio().editDividend(dividend, panel.entry(), oldShares, oldSharePrice, oldCash, oldDate);
  });
  if (otherFollowed)
    return;
  MainWindow::error(
      reinvested ? u"Please find and edit the corresponding reinvested held shares from this transaction."
                 : u"Please find and edit the corresponding cash deposit from this transaction.");
}

} // namespace Tallymoor
