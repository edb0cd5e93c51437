#pragma once
#include "widgets/CellResult.h"

namespace Tallymoor {

class Row;

/// The cell functions of the table of the cash reserve, whose rows carry an EventRow with a cash event.
namespace CashCells {

CellResult description(Row& row);
/// Empty for what takes from the cash.
CellResult credits(Row& row);
/// Empty for what adds to the cash.
CellResult debits(Row& row);
/// The cash at the end of the event's day; 0 for a day that the capital record has not.
CellResult balance(Row& row);

} // namespace CashCells

} // namespace Tallymoor
