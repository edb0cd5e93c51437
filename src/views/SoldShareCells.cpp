#include "views/SoldShareCells.h"
#include "analysis/SaleFigures.h"
#include "market/StockNames.h"
#include "views/CellFigures.h"
#include "views/EventTable.h"

namespace Tallymoor::SoldShareCells {

namespace {

SaleFigures saleOf(const Row& row) {
  return SaleFigures(row.payload<EventRow>().as<XMLSellEvent>());
}

} // namespace

CellResult stockCode(Row& row) {
  return CellResult(saleOf(row).code());
}

CellResult name(Row& row) {
  return CellResult(StockNames::nameOf(saleOf(row).code()));
}

CellResult numSold(Row& row) {
  return CellResult(saleOf(row).number(), CELL_NUMBER);
}

CellResult buyPrice(Row& row) {
  return CellResult(saleOf(row).buyPrice(), CELL_PRICE);
}

CellResult sellPrice(Row& row) {
  return CellResult(saleOf(row).sellPrice(), CELL_PRICE);
}

CellResult grossCost(Row& row) {
  return CellResult(saleOf(row).grossCost(), CELL_MONEY);
}

CellResult grossSale(Row& row) {
  return CellResult(saleOf(row).grossSale(), CELL_MONEY);
}

CellResult grossProfit(Row& row) {
  return CellResult(saleOf(row).grossProfit(), CELL_MONEY);
}

CellResult totalBrokerage(Row& row) {
  return CellResult(saleOf(row).totalBrokerage(), CELL_MONEY);
}

CellResult netProfit(Row& row) {
  return CellResult(saleOf(row).netProfit(), CELL_MONEY);
}

CellResult grossGain(Row& row) {
  return figure(saleOf(row).grossGain(), CELL_PERCENT);
}

CellResult netGain(Row& row) {
  return figure(saleOf(row).netGain(), CELL_PERCENT);
}

CellResult annualisedNetGain(Row& row) {
  return annualised(row, &netGain, &daysHeld);
}

CellResult buyDate(Row& row) {
  return CellResult(saleOf(row).bought());
}

CellResult sellDate(Row& row) {
  return CellResult(saleOf(row).sold());
}

CellResult daysHeld(Row& row) {
  return CellResult(saleOf(row).daysHeld());
}

CellResult comment(Row& row) {
  return CellResult(row.payload<EventRow>().as<XMLSellEvent>().comment());
}

} // namespace Tallymoor::SoldShareCells
