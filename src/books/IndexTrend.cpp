#include "books/IndexTrend.h"
#include "books/Gains.h"
#include "books/PortfolioPrices.h"
#include "market/MarketPrices.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <vector>

namespace Tallymoor {

namespace {

constexpr double LONGEST_TREND = 5000; ///< weekdays, some 19 years: a mistyped period would fetch more

/// That many weekdays before a day, oldest first.
std::vector<Date> weekdaysBefore(Date day, int count) {
  std::vector<Date> days;
  while (days.size() < static_cast<std::size_t>(count)) {
    day.addDays(-1);
    if (!day.isWeekend())
      days.push_back(day);
  }
  std::reverse(days.begin(), days.end());
  return days;
}

} // namespace

String IndexTrend::code() const {
  return m_portfolio.comparisonIndex();
}

void IndexTrend::setCode(const String& code) {
  m_averages.clear();
  m_portfolio.setComparisonIndex(code);
}

double IndexTrend::valueOn(const Date& date) const {
  const String index = code();
  if (index.empty())
    return 0.0;
  const std::optional<DayPrice> value = m_prices.marketPrice(index, date, true);
  if (!value)
    throw PortfolioPrices::noPrice(index, date);
  return value->price;
}

double IndexTrend::gainSince(const Date& then) const {
  return indexGainPercent(valueOn(Date()), valueOn(then)).value_or(0.0);
}

int IndexTrend::trendDays(double period) {
  // NaN is caught here too.
  return period >= 1.0 ? static_cast<int>(std::min(period, LONGEST_TREND)) : 1;
}

Date IndexTrend::firstDayOfAverage(double period) {
  return weekdaysBefore(Date(), 2 * trendDays(period)).front();
}

double IndexTrend::movingAverage(double period) {
  std::map<Date, double>& averages = m_averages[trendDays(period)];
  const Date today;
  if (const auto known = averages.find(today); known != averages.end())
    return known->second;
  const double average = computeMovingAverage(period);
  averages.emplace(today, average);
  return average;
}

double IndexTrend::computeMovingAverage(double period) const {
  const String index = code();
  if (index.empty())
    return 0.0;
  const auto closeOn = [&](const Date& day) { return m_market.historicalPrice(index, day, false); };
  const int count = trendDays(period);
  const std::vector<Date> recent = weekdaysBefore(Date(), count);
  // The plain mean of as many days before those gives the average something to start from.
  double average = 0.0;
  for (const Date& day : weekdaysBefore(recent.front(), count))
    average += closeOn(day);
  average /= count;

  const double weight = 2.0 / (count + 1);
  for (const Date& day : recent)
    average += (closeOn(day) - average) * weight;
  return average;
}

} // namespace Tallymoor
