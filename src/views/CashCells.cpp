#include "views/CashCells.h"
#include "books/SharePortfolioUser.h"
#include "views/EventTable.h"

namespace Tallymoor::CashCells {

namespace {

const XMLCashEvent& eventOf(const Row& row) {
  return row.payload<EventRow>().as<XMLCashEvent>();
}

/// What is no credit takes from the balance, an unknown type too.
CellResult valueIfCredit(const Row& row, bool credit) {
  const XMLCashEvent& event = eventOf(row);
  return event.isCredit() == credit ? CellResult(event.amount(), CELL_MONEY) : CellResult(String());
}

} // namespace

CellResult description(Row& row) {
  return CellResult(eventOf(row).description());
}

CellResult credits(Row& row) {
  return valueIfCredit(row, true);
}

CellResult debits(Row& row) {
  return valueIfCredit(row, false);
}

CellResult balance(Row& row) {
  const auto& [event, portfolio, date] = row.payload<EventRow>();
  const SharePortfolioCapitalRecordUser& record = portfolio->capitalRecord();
  return CellResult(record.hasDayCap(date) ? record.cashOn(date) : 0.0, CELL_MONEY);
}

} // namespace Tallymoor::CashCells
