#pragma once
#include "views/PriceLimits.h"
#include "widgets/Column.h"

namespace Tallymoor {

class Row;
class Table;

/// The cells of a stock's indicators and of the limits made of them, for every table whose rows carry a
/// HeldShareRow, as of the date shown. What is unavailable is an empty text: the stock is too young, or its
/// prices can't be fetched. They throw NotYetKnown while these are being fetched.
namespace IndicatorCells {

CellResult lrValue(Row& row);
CellResult lrRate(Row& row);
CellResult averageTrueRange(Row& row);
CellResult autoMinMax(Row& row);
CellResult autoVolatility(Row& row);

} // namespace IndicatorCells

/// The columns "LR Value", "LR Rate" and "Av. True Range".
void declareTrendColumns(Table& table, bool defaultVisible);
/// The column "Auto Min/Max".
void declareAutoMinMaxColumn(Table& table);

/// Those that the row's table shows as "Auto Min/Max"; none where they are unavailable.
PriceLimits automaticLimits(Row& row);
/// Those of a stock, as that column would show them.
PriceLimits automaticLimits(const String& code);
/// The limits for warnings: the user's own, or the automatic ones when these are chosen.
PriceLimits limitsInForce(Row& row);
/// Where the price of that column stands between the limits, from 0% to 100%; empty without a price or
/// without an upper limit.
CellResult percentInLimits(Row& row, const PriceLimits& limits, Column::Function price);

} // namespace Tallymoor
