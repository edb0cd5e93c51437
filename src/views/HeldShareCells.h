#pragma once
#include "foundation/Date.h"
#include "widgets/CellResult.h"

namespace Tallymoor {

class Row;
class XMLElement;
struct HeldShareRow;

/// The cell functions of the tables of held shares, whose rows carry a HeldShareRow. Each computes from the
/// records and prices as of the date shown, by way of its table's other cells where it builds on them. They
/// throw where a price is unavailable, which costs the cell. A figure that is not finite is an empty text.
namespace HeldShareCells {

/// Of the company; empty where it is not known.
CellResult name(Row& row);
CellResult number(Row& row);
CellResult buyPrice(Row& row);
/// For a whole share it also tints the row and warns where the price has left its limits.
CellResult priceNow(Row& row);
CellResult purchaseValue(Row& row);
CellResult currentValue(Row& row);
CellResult dayMove(Row& row);
CellResult dayGain(Row& row);
CellResult dayPercent(Row& row);
CellResult weekPercent(Row& row);
CellResult monthPercent(Row& row);
CellResult gainPercent(Row& row);
CellResult annualisedGainPercent(Row& row);
CellResult grossGain(Row& row);
CellResult priceMinMax(Row& row);
CellResult percentInMinMax(Row& row);
CellResult portfolioPercent(Row& row);
CellResult daysHeld(Row& row);
CellResult buyDate(Row& row);
/// What the user has noted about the purchase.
CellResult comment(Row& row);

} // namespace HeldShareCells

/// Price of the share on a day: from its portfolio, or as shownPrice has it while a view date is set, when a
/// price that was paid on a later day must not stand in. Throws Exception.
double sharePriceOn(const HeldShareRow& share, const Date& date);

/// What the share was worth on an earlier day to its present holder: parcels bought later count at their
/// cost. Throws as sharePriceOn.
double heldValueSince(const HeldShareRow& share, const Date& date);

} // namespace Tallymoor
