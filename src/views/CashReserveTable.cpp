#include "views/CashReserveTable.h"
#include "books/SharePortfolioUser.h"
#include "entry/EditFloatDialog.h"
#include "entry/GetFloatPanel.h"
#include "views/CashCells.h"
#include "views/PortfolioCommands.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

FXDEFMAP(CashReserveTable)
CashReserveTableMap[] = {
    FXMAPFUNC(SEL_COMMAND, CashReserveTable::ID_DELETE, CashReserveTable::onDelete),
    FXMAPFUNC(SEL_COMMAND, CashReserveTable::ID_EDIT, CashReserveTable::onEdit),
};

FXIMPLEMENT_ABSTRACT(CashReserveTable, EventTable, CashReserveTableMap, ARRAYNUMBER(CashReserveTableMap))

CashReserveTable::CashReserveTable(SharePortfolioUser& portfolio, PortfolioCommands& commands,
                                   FXComposite* parent, Watcher* watcher)
    : EventTable(u"Cash Reserve Table", portfolio, commands, parent, watcher) {
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

String CashReserveTable::noEventsText() const {
  return u"No cash is recorded.\nRecord what you paid in by Portfolios, Deposit Cash...";
}

void CashReserveTable::addAllEvents() {
  addEvents(portfolio().portfolio().cashEvents());
}

void CashReserveTable::rowPopup(const TableClick& click) {
  if (!click.row)
    return;
  setInputRow(click.row);
  eventPopup(click, {u"Edit cash transaction from " + click.row->key() + u"...", ID_EDIT},
             {u"Delete from records!...", ID_DELETE});
}

long CashReserveTable::onDelete(FXObject*, FXSelector, void*) {
  return guardedHandler(u"CashReserveTable::onDelete failed.", [this] {
    if (const auto* event = inputEvent<XMLCashEvent>())
      deleteEvent(*event);
  });
}

void CashReserveTable::deleteEvent(const XMLCashEvent& event) {
  if (!MainWindow::question(
          u"Are you sure you want to delete a record of this cash event? \nThis will affect "
          u"your Total Capital!"))
    return;
  // Asked for before the change, here and below, so that the tables are safe whatever the change meets.
  commands().transactionMade();
  portfolio().deleteCashEvent(event);
}

long CashReserveTable::onEdit(FXObject*, FXSelector, void*) {
  return guardedHandler(u"CashReserveTable::onEdit failed.", [this] {
    if (auto* event = inputEvent<XMLCashEvent>())
      editEvent(*event);
  });
}

void CashReserveTable::editEvent(XMLCashEvent& event) {
  const Date oldDate = event.day();
  EditFloatDialog dialog(&MainWindow::Instance(), u"Edit cash transaction", String(), portfolio().portfolio(),
                         event);
  if (dialog.execute() == 0)
    return;
  const GetFloatPanel& panel = *dialog.panel();
  commands().transactionMade();
  portfolio().editCashEvent(event, panel.date(), oldDate, panel.value(), panel.text());
}

} // namespace Tallymoor
