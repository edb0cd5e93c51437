#pragma once
#include "widgets/CellResult.h"

namespace Tallymoor {

class Row;
class Table;

/// The cell functions of a watchlist, whose rows carry a HeldShareRow with nothing but a code and stand in a
/// WatchlistTable. All is as of the date shown. They throw where a price is unavailable, which costs the
/// cell. A figure that is not finite is an empty text. Gains over a split compare what one share of today was
/// worth before it.
namespace WatchlistCells {

/// Of the company; empty where it is not known.
CellResult name(Row& row);
/// Also tints the row: red or green, with a warning, where the price has left the limits; otherwise blue
/// where it is a buy signal.
CellResult priceNow(Row& row);
CellResult dayMove(Row& row);
CellResult dayPercent(Row& row);
CellResult weekPercent(Row& row);
CellResult monthPercent(Row& row);
CellResult threeMonthsPercent(Row& row);
CellResult sixMonthsPercent(Row& row);
CellResult twelveMonthsPercent(Row& row);
CellResult calendarYearPercent(Row& row);
CellResult financialYearPercent(Row& row);
CellResult priceMinMax(Row& row);
CellResult percentInMinMax(Row& row);
/// Money, of the capital that the list stands for.
CellResult autoMaxPortfolio(Row& row);

} // namespace WatchlistCells

/// The columns of a watchlist.
void declareWatchlistColumns(Table& table);

} // namespace Tallymoor
