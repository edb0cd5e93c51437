#include "analysis/PeriodEvents.h"
#include "books/SharePortfolioUser.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

namespace {

template <class Record>
void addWithin(const ReportPeriod& period, const SharePortfolioUser& portfolio,
               const ElementList<const Record>& records, std::vector<EventOf<Record>>& events) {
  for (const Record& record : records)
    if (const Date day = record.day(); period.contains(day))
      events.push_back({day, &record, &portfolio});
}

template <class Record>
void sortByDay(std::vector<EventOf<Record>>& events) {
  std::stable_sort(events.begin(), events.end(), [](const auto& a, const auto& b) { return a.day < b.day; });
}

} // namespace

std::vector<SaleOf> salesWithin(const Portfolios& portfolios, const ReportPeriod& period) {
  std::vector<SaleOf> events;
  for (const SharePortfolioUser* portfolio : portfolios)
    for (const XMLSoldShare& stock : portfolio->portfolio().soldShares())
      addWithin(period, *portfolio, stock.sales(), events);
  sortByDay(events);
  return events;
}

std::vector<DividendOf> dividendsWithin(const Portfolios& portfolios, const ReportPeriod& period) {
  std::vector<DividendOf> events;
  for (const SharePortfolioUser* portfolio : portfolios)
    addWithin(period, *portfolio, portfolio->portfolio().dividends(), events);
  sortByDay(events);
  return events;
}

std::vector<CashFlow> cashFlowsWithin(const Portfolios& portfolios, const ReportPeriod& period) {
  std::vector<CashFlow> events;
  for (const SharePortfolioUser* portfolio : portfolios)
    addWithin(period, *portfolio, portfolio->portfolio().cashEvents(), events);
  sortByDay(events);
  return events;
}

} // namespace Tallymoor
