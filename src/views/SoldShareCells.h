#pragma once
#include "widgets/CellResult.h"

namespace Tallymoor {

class Row;

/// The cell functions of the table of sales, whose rows carry an EventRow with a sale. Prices and numbers are
/// those of the day of sale. A figure that is not finite is an empty text.
namespace SoldShareCells {

CellResult stockCode(Row& row);
/// Of the company; empty where it is not known.
CellResult name(Row& row);
CellResult numSold(Row& row);
CellResult buyPrice(Row& row);
CellResult sellPrice(Row& row);
CellResult grossCost(Row& row);
CellResult grossSale(Row& row);
CellResult grossProfit(Row& row);
CellResult totalBrokerage(Row& row);
CellResult netProfit(Row& row);
CellResult grossGain(Row& row);
CellResult netGain(Row& row);
CellResult annualisedNetGain(Row& row);
CellResult buyDate(Row& row);
CellResult sellDate(Row& row);
CellResult daysHeld(Row& row);
/// What the user has noted about the sale.
CellResult comment(Row& row);

} // namespace SoldShareCells

} // namespace Tallymoor
