#include "views/SoldShareCells.h"
#include "views/CellFigures.h"
#include "views/EventTable.h"
#include "xml/Leaves.h"

namespace Tallymoor::SoldShareCells {

namespace {

const XMLElement& saleOf(const Row& row) {
  return *row.payload<EventRow>().event;
}

double amount(const Row& row, std::u16string_view name) {
  return doubleValue(saleOf(row), name);
}

} // namespace

CellResult stockCode(Row& row) {
  return CellResult(textValue(*saleOf(row).parent(), u"Code"));
}

CellResult numSold(Row& row) {
  return CellResult(amount(row, u"NumHeld"), CELL_NUMBER);
}

CellResult buyPrice(Row& row) {
  return CellResult(amount(row, u"BuyPrice"), CELL_PRICE);
}

CellResult sellPrice(Row& row) {
  return CellResult(amount(row, u"SellPrice"), CELL_PRICE);
}

CellResult grossCost(Row& row) {
  return CellResult(cellValue(row, &buyPrice) * cellValue(row, &numSold), CELL_MONEY);
}

CellResult grossSale(Row& row) {
  return CellResult(cellValue(row, &sellPrice) * cellValue(row, &numSold), CELL_MONEY);
}

CellResult grossProfit(Row& row) {
  return CellResult((cellValue(row, &sellPrice) - cellValue(row, &buyPrice)) * cellValue(row, &numSold),
                    CELL_MONEY);
}

CellResult totalBrokerage(Row& row) {
  return CellResult(amount(row, u"BuyBrokerage") + amount(row, u"SellBrokerage"), CELL_MONEY);
}

CellResult netProfit(Row& row) {
  return CellResult(cellValue(row, &grossProfit) - cellValue(row, &totalBrokerage), CELL_MONEY);
}

CellResult grossGain(Row& row) {
  const double bought = cellValue(row, &buyPrice);
  return figure((cellValue(row, &sellPrice) - bought) / bought * 100.0, CELL_PERCENT);
}

CellResult netGain(Row& row) {
  return figure(cellValue(row, &netProfit) / cellValue(row, &grossCost) * 100.0, CELL_PERCENT);
}

CellResult annualisedNetGain(Row& row) {
  return annualised(row, &netGain, &daysHeld);
}

CellResult buyDate(Row& row) {
  return CellResult(dateValue(saleOf(row), u"BuyDate"));
}

CellResult sellDate(Row& row) {
  return CellResult(dateValue(saleOf(row), u"SellDate"));
}

CellResult daysHeld(Row& row) {
  return CellResult(
      std::int32_t(dateValue(saleOf(row), u"SellDate").daysSince(dateValue(saleOf(row), u"BuyDate"))));
}

} // namespace Tallymoor::SoldShareCells
