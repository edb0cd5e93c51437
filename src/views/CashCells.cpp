#include "views/CashCells.h"
#include "engine/SharePortfolioUser.h"
#include "views/EventTable.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor::CashCells {

namespace {

const XMLElement& eventOf(const Row& row) {
  return *row.payload<EventRow>().event;
}

/// What is no credit takes from the balance, an unknown type too.
CellResult valueIfCredit(const Row& row, bool credit) {
  const XMLElement& event = eventOf(row);
  if (isCreditType(longValue(event, u"Type")) != credit)
    return CellResult(String());
  return CellResult(doubleValue(event, u"Value"), CELL_MONEY);
}

} // namespace

CellResult description(Row& row) {
  return CellResult(textValue(eventOf(row), u"Description"));
}

CellResult credits(Row& row) {
  return valueIfCredit(row, true);
}

CellResult debits(Row& row) {
  return valueIfCredit(row, false);
}

CellResult balance(Row& row) {
  const SharePortfolioCapitalRecordUser& record = row.payload<EventRow>().portfolio->capitalRecord();
  const Date date = dateValue(eventOf(row), u"Date");
  return CellResult(record.hasDayCap(date) ? record.cashOn(date) : 0.0, CELL_MONEY);
}

} // namespace Tallymoor::CashCells
