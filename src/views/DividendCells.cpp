#include "views/DividendCells.h"
#include "engine/FrankingCredit.h"
#include "foundation/Amounts.h"
#include "views/CellFigures.h"
#include "views/EventTable.h"
#include "xml/Leaves.h"

namespace Tallymoor::DividendCells {

namespace {

const XMLElement& dividendOf(const Row& row) {
  return *row.payload<EventRow>().event;
}

double rateOf(const Row& row) {
  return doubleValue(dividendOf(row), u"Rate");
}

} // namespace

CellResult code(Row& row) {
  return CellResult(textValue(dividendOf(row), u"Code"));
}

CellResult onNumHeld(Row& row) {
  return CellResult(doubleValue(dividendOf(row), u"NumHeld"), CELL_NUMBER);
}

CellResult rate(Row& row) {
  return CellResult(textValue(dividendOf(row), u"Rate"));
}

CellResult value(Row& row) {
  return CellResult(rateOf(row) * cellValue(row, &onNumHeld), CELL_MONEY);
}

CellResult percentFranked(Row& row) {
  return CellResult(doubleValue(dividendOf(row), u"PercentFranked"), CELL_PERCENT);
}

CellResult frankingCreditOf(Row& row) {
  return CellResult(frankingCredit(cellValue(row, &onNumHeld), rateOf(row), cellValue(row, &percentFranked)),
                    CELL_MONEY);
}

CellResult receivedAs(Row& row) {
  const XMLElement& dividend = dividendOf(row);
  const double shares = doubleValue(dividend, u"DRPShares");
  if (tenThousandths(shares) <= 0)
    return CellResult(u"Cash");
  return CellResult(String::fromDouble(shares, 2) + u" shares at " + textValue(dividend, u"DRPRate"));
}

CellResult foreignSource(Row& row) {
  const XMLElement& dividend = dividendOf(row);
  return CellResult(dividend.numSubElements(u"ForeignDividend") > 0 ? textValue(dividend, u"ForeignDividend")
                                                                    : String());
}

CellResult withholdingTax(Row& row) {
  const XMLElement& dividend = dividendOf(row);
  return CellResult(dividend.numSubElements(u"WithholdingTax") > 0 ? doubleValue(dividend, u"WithholdingTax")
                                                                   : 0.0,
                    CELL_MONEY);
}

} // namespace Tallymoor::DividendCells
