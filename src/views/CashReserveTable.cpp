#include "views/CashReserveTable.h"
#include "books/SharePortfolioUser.h"
#include "entry/EditFloatDialog.h"
#include "entry/GetFloatPanel.h"
#include "views/CashCells.h"
#include "views/PortfolioCommands.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

namespace {

constexpr EventTable::Texts TEXTS{
    u"Cash Reserve Table", u"No cash is recorded.\nRecord what you paid in by Portfolios, Deposit Cash...",
    u"CashReserveTable::onEdit failed.", u"CashReserveTable::onDelete failed."};

String named(const XMLCashEvent& event) {
  return u"the cash entry " + event.description();
}

} // namespace

CashReserveTable::CashReserveTable(SharePortfolioUser& portfolio, PortfolioCommands& commands,
                                   FXComposite* parent, Watcher* watcher)
    : EventTable(TEXTS, portfolio, commands, parent, watcher) {
  updateTable();
}

std::vector<EventTable::ColumnOf> CashReserveTable::columnsOfEvents() const {
  using namespace CashCells;
  constexpr FXuint RIGHT = FXTableItem::RIGHT;
  return {{u"Description", &description, COMPARE_TEXT, FXTableItem::LEFT, true, EVENT_ALONE},
          {u"Credits", &credits, COMPARE_AMOUNT, RIGHT, true, EVENT_ALONE},
          {u"Debits", &debits, COMPARE_AMOUNT, RIGHT, true, EVENT_ALONE},
          {u"Balance", &balance, COMPARE_AMOUNT}};
}

void CashReserveTable::addAllEvents() {
  addEvents(portfolio().portfolio().cashEvents());
}

EventTable::PopupLabels CashReserveTable::popupLabels(const EventRow& row) const {
  return {u"Edit cash transaction from " + row.day.toString(DATE_DISPLAY_LOCAL) + u"...",
          u"Delete from records!..."};
}

void CashReserveTable::deleteEvent(const EventRow& row) {
  const auto& event = row.as<XMLCashEvent>();
  if (!MainWindow::question(
          u"Are you sure you want to delete a record of this cash event? \nThis will affect "
          u"your Total Capital!"))
    return;
  commands().change(u"Deletion of " + named(event), [&] { portfolio().deleteCashEvent(event); });
}

void CashReserveTable::editEvent(const EventRow& row) {
  auto& event = row.as<XMLCashEvent>();
  const Date oldDate = event.day();
  EditFloatDialog dialog(&MainWindow::Instance(), u"Edit cash transaction", String(), portfolio().portfolio(),
                         event);
  if (dialog.execute() == 0)
    return;
  const GetFloatPanel& panel = *dialog.panel();
  commands().change(u"Edit of " + named(event), [&] {
    portfolio().editCashEvent(event, panel.date(), oldDate, panel.value(), panel.text());
  });
}

} // namespace Tallymoor
