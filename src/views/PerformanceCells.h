#pragma once
#include "foundation/Date.h"
#include "widgets/CellResult.h"

namespace Tallymoor {

class PortfolioPerformanceTable;
class Row;

/// What a row of the table of performance is computed from: a month of the table's portfolios.
struct PerformanceRow {
  Date end;
  Date start; ///< the last day of the month before
  const PortfolioPerformanceTable* table;
};

/// The cell functions of the table of performance, whose rows carry a PerformanceRow. Gains are empty where
/// there is nothing to compare with, those of the index also where its price is not known. While that is
/// being fetched, they throw NotYetKnown.
namespace PerformanceCells {

CellResult totalCapital(Row& row);
/// The index's price, as text.
CellResult index(Row& row);
CellResult brokerage(Row& row);
/// So many months up to the row's end: 1, 3, 6, 9 or 12.
template <int Months>
CellResult gain(Row& row);
template <int Months>
CellResult gainOfIndex(Row& row);
/// A year, over 3 or 5 years.
template <int Years>
CellResult annualGain(Row& row);
template <int Years>
CellResult annualGainOfIndex(Row& row);
CellResult gainOfFinancialYear(Row& row);
CellResult indexGainOfFinancialYear(Row& row);
CellResult gainOfCalendarYear(Row& row);
CellResult indexGainOfCalendarYear(Row& row);
CellResult externalFlowOf(Row& row);

} // namespace PerformanceCells

} // namespace Tallymoor
