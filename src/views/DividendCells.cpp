#include "views/DividendCells.h"
#include "analysis/DividendFigures.h"
#include "market/StockNames.h"
#include "views/EventTable.h"

namespace Tallymoor::DividendCells {

namespace {

DividendFigures dividendOf(const Row& row) {
  return DividendFigures(row.payload<EventRow>().as<XMLDividendEvent>());
}

} // namespace

CellResult code(Row& row) {
  return CellResult(dividendOf(row).code());
}

CellResult name(Row& row) {
  return CellResult(StockNames::nameOf(dividendOf(row).code()));
}

CellResult onNumHeld(Row& row) {
  return CellResult(dividendOf(row).numHeld(), CELL_NUMBER);
}

CellResult rate(Row& row) {
  return CellResult(dividendOf(row).rateText());
}

CellResult value(Row& row) {
  return CellResult(dividendOf(row).value(), CELL_MONEY);
}

CellResult percentFranked(Row& row) {
  return CellResult(dividendOf(row).percentFranked(), CELL_PERCENT);
}

CellResult frankingCreditOf(Row& row) {
  return CellResult(dividendOf(row).frankingCredit(), CELL_MONEY);
}

CellResult receivedAs(Row& row) {
  return CellResult(dividendOf(row).receivedAs());
}

CellResult foreignSource(Row& row) {
  return CellResult(dividendOf(row).foreignSource());
}

CellResult withholdingTax(Row& row) {
  return CellResult(dividendOf(row).withholdingTax(), CELL_MONEY);
}

} // namespace Tallymoor::DividendCells
