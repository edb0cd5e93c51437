#include "views/PortfolioPerformanceTable.h"
#include "analysis/IndexHistory.h"
#include "books/SharePortfolioUser.h"
#include "market/TallymoorInternet.h"
#include <algorithm>

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(PortfolioPerformanceTable, Table, nullptr, 0)

namespace {

using namespace PerformanceCells;

constexpr int LONGEST_INDEX_SPAN = 12; ///< months before a row's end that need no record of the portfolio

struct ColumnOf {
  const char16_t* title = nullptr;
  Column::Function function = nullptr;
  CompareType compareType = COMPARE_PERCENT;
  bool defaultVisible = true;
  bool ofIndex = false;
  const char16_t* toolTip = u"";
};

constexpr CompareType PERCENT = COMPARE_PERCENT;

const ColumnOf COLUMNS[] = {
    {u"Total Capital", &totalCapital, COMPARE_AMOUNT, true, false,
     u"Cash and shares at the end of the day. * Provisional. Where a price is unavailable, the last known "
     u"one, or that of a purchase or sale, stands in. The day is computed again when the price comes."},
    {u"Index", &index, COMPARE_NUMBER, true, true},
    {u"1 Month", &gain<1>, PERCENT, true, false, u"Gain since the last day of the month before."},
    {u"Brokerage %", &brokerage, PERCENT, true, false,
     u"Brokerage of the month in percent of the capital at its start."},
    {u"1 Month Index", &gainOfIndex<1>, PERCENT, true, true,
     u"Gain of the index since the last day of the month before. A watchlist counts from the day itself."},
    {u"3 Months", &gain<3>, PERCENT, true, false,
     u"Gain since the last day of the month three months before."},
    {u"3 Months Index", &gainOfIndex<3>, PERCENT, true, true,
     u"Gain of the index since the last day of the month three months before. A watchlist counts from the "
     u"day itself."},
    {u"6 Months", &gain<6>, PERCENT, true, false, u"Gain since the last day of the month six months before."},
    {u"6 Months Index", &gainOfIndex<6>, PERCENT, true, true,
     u"Gain of the index since the last day of the month six months before. A watchlist counts from the day "
     u"itself."},
    {u"9 Months", &gain<9>, PERCENT, true, false,
     u"Gain since the last day of the month nine months before."},
    {u"9 Months Index", &gainOfIndex<9>, PERCENT, true, true,
     u"Gain of the index since the last day of the month nine months before. A watchlist counts from the day "
     u"itself."},
    {u"12 Months", &gain<12>, PERCENT, true, false,
     u"Gain since the last day of the month twelve months before."},
    {u"12 Months Index", &gainOfIndex<12>, PERCENT, true, true,
     u"Gain of the index since the last day of the month twelve months before. A watchlist counts from the "
     u"day itself."},
    {u"3 Years Ann.", &annualGain<3>, PERCENT, false, false, u"Gain of three years, as growth a year."},
    {u"3 Years Index Ann.", &annualGainOfIndex<3>, PERCENT, false, true},
    {u"5 Years Ann.", &annualGain<5>, PERCENT, false, false, u"Gain of five years, as growth a year."},
    {u"5 Years Index Ann.", &annualGainOfIndex<5>, PERCENT, false, true},
    {u"Fin Year", &gainOfFinancialYear, PERCENT, true, false, u"Gain since the financial year began."},
    {u"Fin Year Index", &indexGainOfFinancialYear, PERCENT, true, true},
    {u"Cal Year", &gainOfCalendarYear, PERCENT, true, false, u"Gain since the calendar year began."},
    {u"Cal Year Index", &indexGainOfCalendarYear, PERCENT, true, true},
    {u"External Flow", &externalFlowOf, COMPARE_AMOUNT, true, false,
     u"Money that was paid in (or taken out, with a minus sign) in the month."},
};

} // namespace

PortfolioPerformanceTable::PortfolioPerformanceTable(const Portfolios& portfolios, bool isTotal,
                                                     const String& name, FXComposite* parent,
                                                     Watcher* watcher)
    : Table(name, parent, true, watcher, COMPARE_NEWEST_FIRST), m_portfolios(portfolios), m_isTotal(isTotal) {
  updateTable();
  TallymoorInternet::Instance().priceUpdater().addObserver(this);
}

PortfolioPerformanceTable::~PortfolioPerformanceTable() {
  if (TallymoorInternet::exists())
    TallymoorInternet::Instance().priceUpdater().removeObserver(this);
}

void PortfolioPerformanceTable::setPortfolios(const Portfolios& portfolios) {
  m_portfolios = portfolios;
  recordsChanged();
  updateTable();
}

void PortfolioPerformanceTable::fillTable() {
  const std::vector<PerformanceSpan> months = performanceMonths(m_portfolios, Date());
  requestIndex(months);
  clear();
  m_rowData.clear();
  m_paidBrokerage.reset();
  declareColumns();
  for (const PerformanceSpan& month : months)
    addMonth(month);
  rebuild();
}

const PaidBrokerage& PortfolioPerformanceTable::paidBrokerage() const {
  if (!m_paidBrokerage)
    m_paidBrokerage.emplace(m_portfolios);
  return *m_paidBrokerage;
}

void PortfolioPerformanceTable::declareColumns() {
  for (const ColumnOf& column : COLUMNS)
    if (!column.ofIndex || !m_isTotal)
      addColumn(
          std::make_unique<Column>(column.title, column.function, column.compareType, column.defaultVisible))
          .setToolTip(column.toolTip);
}

void PortfolioPerformanceTable::addMonth(const PerformanceSpan& month) {
  m_rowData.push_back({month.end, month.start, this});
  addRow(std::make_unique<Row>(month.end.toString(DATE_DISPLAY_LOCAL), &m_rowData.back()));
}

/// Every span of a row begins at the end of a month.
void PortfolioPerformanceTable::requestIndex(const std::vector<PerformanceSpan>& months) {
  if (m_isTotal || months.empty() || m_portfolios.size() != 1 || !m_portfolios.front()->hasComparisonIndex())
    return;
  std::vector<Date> days{months.front().end};
  const Date oldest = startOfPeriod(months.back().end, LONGEST_INDEX_SPAN);
  for (Date day = months.front().start; day >= oldest; day = startOfPeriod(day, 1))
    days.push_back(day);
  IndexHistory::request(m_portfolios.front()->comparisonIndex(), days);
}

// ---- Prices ----

bool PortfolioPerformanceTable::concerns(const String& code) const {
  return std::any_of(m_portfolios.begin(), m_portfolios.end(), [&](const SharePortfolioUser* portfolio) {
    return portfolio->findHeldShare(code) || portfolio->comparisonIndex() == code;
  });
}

/// The capital of a day counts in the rows that end on it or later. Rows that are yet to be rebuilt don't
/// say which days there are.
void PortfolioPerformanceTable::markFrom(const Date& day) {
  if (hasChangedRecords()) {
    markAllStale();
    return;
  }
  for (const PerformanceRow& row : m_rowData) {
    if (row.end < day)
      return;
    markStale(row.end.toString(DATE_DISPLAY_LOCAL));
  }
}

void PortfolioPerformanceTable::currentPriceUpdated(const String& code, double) {
  // After midnight there is no row of today until the user's next action.
  if (concerns(code))
    markFrom(Date());
}

void PortfolioPerformanceTable::historicalPriceChanged(const String& code, const Date& date, double) {
  if (concerns(code))
    markFrom(date);
}

void PortfolioPerformanceTable::historyArrived(const String& code) {
  if (concerns(code))
    markAllStale();
}

void PortfolioPerformanceTable::pricesUpdateFinished() {
  markRoundFinished();
}

} // namespace Tallymoor
