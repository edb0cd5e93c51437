#include "views/PerformanceCells.h"
#include "analysis/IndexHistory.h"
#include "analysis/Performance.h"
#include "books/SharePortfolioUser.h"
#include "market/TallymoorInternet.h"
#include "views/CellFigures.h"
#include "views/PortfolioPerformanceTable.h"
#include "widgets/Row.h"

namespace Tallymoor::PerformanceCells {

namespace {

constexpr int MONTHS_OF_A_YEAR = 12;

const PerformanceRow& monthOf(const Row& row) {
  return row.payload<PerformanceRow>();
}

const Portfolios& portfoliosOf(const Row& row) {
  return monthOf(row).table->portfolios();
}

PerformanceSpan spanOf(const Row& row) {
  return {monthOf(row).start, monthOf(row).end};
}

CellResult cellOf(const std::optional<double>& value, CellResultType type) {
  return value ? figure(*value, type) : CellResult(String());
}

/// Throws NotYetKnown while its price is being fetched.
bool knowsIndexOn(const Row& row, const Date& day) {
  const Portfolios& portfolios = portfoliosOf(row);
  if (portfolios.size() != 1 || !portfolios.front()->hasComparisonIndex())
    return false;
  const String index = portfolios.front()->comparisonIndex();
  if (IndexHistory::isKnown(index, day))
    return true;
  TallymoorInternet::Instance().requireHistory({index, day, day, HistoryNeed::Kind::Backward});
  return false;
}

CellResult gainOver(Row& row, int months) {
  return cellOf(periodGain(portfoliosOf(row), monthOf(row).end, months), CELL_PERCENT);
}

/// What the index's figure is where both ends of the period are known.
template <class Gain>
CellResult indexCell(Row& row, int months, Gain indexFigure) {
  const Date& end = monthOf(row).end;
  if (!knowsIndexOn(row, end) || !knowsIndexOn(row, startOfPeriod(end, months)))
    return CellResult(String());
  return cellOf(indexFigure(portfoliosOf(row), end), CELL_PERCENT);
}

CellResult indexGainOver(Row& row, int months) {
  return indexCell(row, months, [months](const Portfolios& portfolios, const Date& end) {
    return indexGain(portfolios, end, months);
  });
}

int financialYearMonths(const Row& row) {
  return monthsOfFinancialYear(monthOf(row).end, Date());
}

int calendarYearMonths(const Row& row) {
  return monthOf(row).end.month();
}

} // namespace

CellResult totalCapital(Row& row) {
  CellResult capital(capitalOn(portfoliosOf(row), monthOf(row).end), CELL_MONEY);
  return isProvisional(portfoliosOf(row), monthOf(row).end) ? capital.setProvisional() : capital;
}

CellResult index(Row& row) {
  const Date& end = monthOf(row).end;
  if (!knowsIndexOn(row, end))
    return CellResult(String());
  return CellResult(String::fromDouble(indexValue(portfoliosOf(row), end).value_or(0.0), 2));
}

CellResult brokerage(Row& row) {
  return cellOf(brokeragePercent(portfoliosOf(row), spanOf(row), monthOf(row).table->paidBrokerage()),
                CELL_PERCENT);
}

template <int Months>
CellResult gain(Row& row) {
  return gainOver(row, Months);
}

template <int Months>
CellResult gainOfIndex(Row& row) {
  return indexGainOver(row, Months);
}

template <int Years>
CellResult annualGain(Row& row) {
  return cellOf(annualisedGain(portfoliosOf(row), monthOf(row).end, Years), CELL_PERCENT);
}

template <int Years>
CellResult annualGainOfIndex(Row& row) {
  return indexCell(row, Years * MONTHS_OF_A_YEAR, [](const Portfolios& portfolios, const Date& end) {
    return annualisedIndexGain(portfolios, end, Years);
  });
}

CellResult gainOfFinancialYear(Row& row) {
  return gainOver(row, financialYearMonths(row));
}

CellResult indexGainOfFinancialYear(Row& row) {
  return indexGainOver(row, financialYearMonths(row));
}

CellResult gainOfCalendarYear(Row& row) {
  return gainOver(row, calendarYearMonths(row));
}

CellResult indexGainOfCalendarYear(Row& row) {
  return indexGainOver(row, calendarYearMonths(row));
}

CellResult externalFlowOf(Row& row) {
  return cellOf(externalFlow(portfoliosOf(row), spanOf(row)), CELL_MONEY);
}

template CellResult gain<1>(Row&);
template CellResult gain<3>(Row&);
template CellResult gain<6>(Row&);
template CellResult gain<9>(Row&);
template CellResult gain<12>(Row&);
template CellResult gainOfIndex<1>(Row&);
template CellResult gainOfIndex<3>(Row&);
template CellResult gainOfIndex<6>(Row&);
template CellResult gainOfIndex<9>(Row&);
template CellResult gainOfIndex<12>(Row&);
template CellResult annualGain<3>(Row&);
template CellResult annualGain<5>(Row&);
template CellResult annualGainOfIndex<3>(Row&);
template CellResult annualGainOfIndex<5>(Row&);

} // namespace Tallymoor::PerformanceCells
