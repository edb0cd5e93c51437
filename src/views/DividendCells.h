#pragma once
#include "widgets/CellResult.h"

namespace Tallymoor {

class Row;

/// The cell functions of the table of dividends, whose rows carry an EventRow with a dividend.
namespace DividendCells {

CellResult code(Row& row);
/// Of the company; empty where it is not known.
CellResult name(Row& row);
CellResult onNumHeld(Row& row);
/// The text as it was recorded, with all its decimals.
CellResult rate(Row& row);
CellResult value(Row& row);
CellResult percentFranked(Row& row);
CellResult frankingCreditOf(Row& row);
/// "Cash", or the shares that it was reinvested in.
CellResult receivedAs(Row& row);
/// The country; empty for a domestic dividend.
CellResult foreignSource(Row& row);
CellResult withholdingTax(Row& row);

} // namespace DividendCells

} // namespace Tallymoor
