// Trend of a portfolio's comparison index.
#include "books/SharePortfolioUser.h"
#include "market/TallymoorInternet.h"
#include <algorithm>
#include <vector>

namespace Tallymoor {

namespace {

constexpr double LONGEST_TREND = 5000; ///< weekdays, some 19 years; beyond it a mistyped period would fetch

/// So many weekdays before a day, oldest first.
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

int SharePortfolioUser::trendDays(double period) {
  // Also for what is no number.
  return period >= 1.0 ? static_cast<int>(std::min(period, LONGEST_TREND)) : 1;
}

double SharePortfolioUser::indexMovingAverage(double period) {
  std::map<Date, double>& trend = m_indexTrends[trendDays(period)];
  const Date today;
  if (const auto known = trend.find(today); known != trend.end())
    return known->second;
  const double average = computeIndexMovingAverage(period);
  trend.emplace(today, average);
  return average;
}

double SharePortfolioUser::computeIndexMovingAverage(double period) const {
  const String index = comparisonIndex();
  if (index.empty())
    return 0.0;
  const auto closeOn = [&index](const Date& day) {
    return TallymoorInternet::Instance().historicalPrice(index, day, false);
  };
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
