#include "analysis/Performance.h"
#include "books/Gains.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Amounts.h"
#include "xml/CountryOfResidence.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr int MONTHS_OF_A_YEAR = 12;

bool hasRecord(const SharePortfolioUser& portfolio, const Date& day) {
  return portfolio.capitalRecord().hasDayCap(day);
}

/// The one portfolio whose index counts, or null.
const SharePortfolioUser* indexedPortfolio(const Portfolios& portfolios) {
  return portfolios.size() == 1 && portfolios.front()->hasComparisonIndex() ? portfolios.front() : nullptr;
}

std::optional<double> annualised(const std::optional<double>& gain, int years) {
  return gain ? annualise(*gain, years) : std::nullopt;
}

} // namespace

std::vector<PerformanceSpan> performanceMonths(const Portfolios& portfolios, const Date& today) {
  std::vector<PerformanceSpan> months;
  PerformanceSpan span{startOfPeriod(today, 1), today};
  // At the beginning of the calendar there is no month before.
  while (span.start < span.end && hasRecordOn(portfolios, span.end)) {
    months.push_back(span);
    span = {startOfPeriod(span.start, 1), span.start};
  }
  return months;
}

bool isProvisional(const Portfolios& portfolios, const Date& day) {
  return std::any_of(portfolios.begin(), portfolios.end(), [&day](const SharePortfolioUser* portfolio) {
    return portfolio->capitalRecord().isProvisional(day);
  });
}

double capitalOn(const Portfolios& portfolios, const Date& day) {
  double capital = 0.0;
  for (const SharePortfolioUser* portfolio : portfolios)
    if (hasRecord(*portfolio, day))
      capital += portfolio->capitalRecord().capitalOn(day);
  return capital;
}

bool hasRecordOn(const Portfolios& portfolios, const Date& day) {
  return std::any_of(portfolios.begin(), portfolios.end(),
                     [&](const SharePortfolioUser* portfolio) { return hasRecord(*portfolio, day); });
}

std::optional<double> indexValue(const Portfolios& portfolios, const Date& day) {
  const SharePortfolioUser* indexed = indexedPortfolio(portfolios);
  return indexed ? std::optional(indexed->indexValueOn(day)) : std::nullopt;
}

Date startOfPeriod(const Date& end, int months) {
  return end.plusMonths(-months).lastDayOfMonth();
}

std::optional<double> gainBetween(const Portfolios& portfolios, const Date& then, const Date& now) {
  double thenSum = 0.0;
  double nowSum = 0.0;
  double flowSum = 0.0;
  for (const SharePortfolioUser* portfolio : portfolios) {
    if (!hasRecord(*portfolio, then) || !hasRecord(*portfolio, now))
      continue;
    const SharePortfolioCapitalRecordUser& record = portfolio->capitalRecord();
    thenSum += record.capitalOn(then);
    nowSum += record.capitalOn(now);
    flowSum += record.externalFlowBetween(then, now);
  }
  return gainPercent(nowSum, thenSum, flowSum);
}

std::optional<double> indexGainBetween(const Portfolios& portfolios, const Date& then, const Date& now) {
  const SharePortfolioUser* indexed = indexedPortfolio(portfolios);
  return indexed ? indexGainPercent(indexed->indexValueOn(now), indexed->indexValueOn(then)) : std::nullopt;
}

std::optional<double> periodGain(const Portfolios& portfolios, const Date& end, int months) {
  return gainBetween(portfolios, startOfPeriod(end, months), end);
}

std::optional<double> indexGain(const Portfolios& portfolios, const Date& end, int months) {
  return indexGainBetween(portfolios, startOfPeriod(end, months), end);
}

std::optional<double> annualisedGain(const Portfolios& portfolios, const Date& end, int years) {
  return annualised(periodGain(portfolios, end, years * MONTHS_OF_A_YEAR), years);
}

std::optional<double> annualisedIndexGain(const Portfolios& portfolios, const Date& end, int years) {
  const int months = years * MONTHS_OF_A_YEAR;
  if (!hasRecordOn(portfolios, startOfPeriod(end, months)))
    return std::nullopt;
  return annualised(indexGain(portfolios, end, months), years);
}

PaidBrokerage::PaidBrokerage(const Portfolios& portfolios) {
  for (const SharePortfolioUser* portfolio : portfolios) {
    for (const XMLHeldShare& stock : portfolio->portfolio().heldShares())
      for (const XMLBuyEvent& parcel : stock.parcels())
        addPayment(parcel.bought(), parcel.brokerage());
    for (const XMLSoldShare& stock : portfolio->portfolio().soldShares())
      for (const XMLSellEvent& sale : stock.sales()) {
        addPayment(sale.bought(), sale.brokerage());
        addPayment(sale.sold(), sale.sellBrokerage());
      }
  }
  std::ranges::stable_sort(m_payments, {}, &Payment::day);
}

void PaidBrokerage::addPayment(const Date& day, double amount) {
  if (amount != 0.0)
    m_payments.push_back({day, amount});
}

double PaidBrokerage::within(const PerformanceSpan& span) const {
  double sum = 0.0;
  for (auto payment = std::ranges::lower_bound(m_payments, span.start, {}, &Payment::day);
       payment != m_payments.end() && payment->day <= span.end; ++payment)
    sum += payment->amount;
  return sum;
}

std::optional<double> brokeragePercent(const Portfolios& portfolios, const PerformanceSpan& span) {
  return brokeragePercent(portfolios, span, PaidBrokerage(portfolios));
}

std::optional<double> brokeragePercent(const Portfolios& portfolios, const PerformanceSpan& span,
                                       const PaidBrokerage& paid) {
  const double capital = capitalOn(portfolios, span.start);
  return showsAsZero(capital) ? std::nullopt : finiteOrNothing(paid.within(span) / capital * 100);
}

std::optional<double> externalFlow(const Portfolios& portfolios, const PerformanceSpan& span) {
  double flow = 0.0;
  for (const SharePortfolioUser* portfolio : portfolios)
    flow += portfolio->capitalRecord().externalFlowBetween(span.start, span.end);
  return showsAsZero(flow) ? std::nullopt : finiteOrNothing(flow);
}

int monthsOfFinancialYear(const Date& end, const Date& today) {
  const int first = CountryOfResidence::Instance().financialYearOf(today).month();
  const int last = end.month();
  return last < first ? MONTHS_OF_A_YEAR + 1 - (first - last) : last - first + 1;
}

} // namespace Tallymoor
