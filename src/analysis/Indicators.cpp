#include "analysis/Indicators.h"
#include "books/Gains.h"
#include "foundation/Amounts.h"
#include <algorithm>
#include <cmath>
#include <span>

namespace Tallymoor {

namespace {

using namespace IndicatorRules;
using Weeks = std::span<const WeeklyPrice>;

constexpr double DAYS_OF_A_WEEK = 7.0;
constexpr double YEARS_OF_RATE = 0.5;

/// Friday of a full week, counted back; 1 is the last one.
Date fridayBack(const Date& day, int weeks) {
  return day.lastFriday().plusDays((1 - weeks) * 7);
}

/// The weeks from the Friday to the day's last one.
Weeks weeksFrom(Weeks weeks, const Date& friday, const Date& day) {
  const auto isBefore = [](const WeeklyPrice& week, const Date& date) { return week.friday < date; };
  const auto first = std::lower_bound(weeks.begin(), weeks.end(), friday, isBefore);
  return Weeks(first, std::lower_bound(first, weeks.end(), day, isBefore));
}

double weeksSince(const Date& day, const Date& friday) {
  return friday.daysSince(day) / DAYS_OF_A_WEEK;
}

/// A line over time in weeks, with 0 at the day of the figures.
struct Line {
  double now;
  double perWeek;
  double at(double weeks) const { return now + perWeek * weeks; }
};

/// Ordinary least squares, about the means so that nothing cancels.
std::optional<Line> regression(Weeks weeks, const Date& day) {
  if (weeks.size() < FEWEST_WEEKS)
    return std::nullopt;
  const double count = static_cast<double>(weeks.size());
  double meanTime = 0.0;
  double meanClose = 0.0;
  for (const WeeklyPrice& week : weeks) {
    meanTime += weeksSince(day, week.friday) / count;
    meanClose += week.close / count;
  }
  double products = 0.0;
  double squares = 0.0;
  for (const WeeklyPrice& week : weeks) {
    const double time = weeksSince(day, week.friday) - meanTime;
    products += time * (week.close - meanClose);
    squares += time * time;
  }
  const double slope = products / squares;
  const Line line{meanClose - slope * meanTime, slope};
  return std::isfinite(line.now) && std::isfinite(slope) ? std::optional(line) : std::nullopt;
}

/// Mean true range of those of the weeks from the Friday on; the week before them gives its close.
std::optional<double> meanTrueRange(Weeks weeks, const Date& from, const Date& day) {
  const Weeks ranged = weeksFrom(weeks, from, day);
  if (ranged.empty())
    return std::nullopt;
  const WeeklyPrice* before = ranged.data() == weeks.data() ? nullptr : ranged.data() - 1;
  double sum = 0.0;
  for (const WeeklyPrice& week : ranged) {
    const double top = before ? std::max(week.high, before->close) : week.high;
    const double bottom = before ? std::min(week.low, before->close) : week.low;
    sum += top - bottom;
    before = &week;
  }
  return finiteOrNothing(sum / static_cast<double>(ranged.size()));
}

std::optional<double> rateOf(const Line& line) {
  const double then = line.at(-WEEKS);
  if (!(line.now > 0.0) || !(then > 0.0))
    return std::nullopt;
  const std::optional<double> gain = indexGainPercent(line.now, then);
  return gain ? annualise(*gain, YEARS_OF_RATE) : std::nullopt;
}

void addLimits(Indicators& figures, double line, double range) {
  figures.autoMin = finiteOrNothing(std::max(0.0, line - RANGES_TO_LIMIT * range));
  figures.autoMax = finiteOrNothing(line + RANGES_TO_LIMIT * range);
}

std::vector<WeeklyPrice> weeksForFigures(const String& code, const Date& day) {
  return recentWeeks(code, day, WEEKS + 1);
}

} // namespace

Indicators indicatorsOf(const std::vector<WeeklyPrice>& weeks, const Date& day) {
  const Date first = fridayBack(day, WEEKS);
  const std::optional<Line> line = regression(weeksFrom(weeks, first, day), day);
  if (!line)
    return {};
  Indicators figures;
  figures.lrValue = line->now;
  figures.lrRate = rateOf(*line);
  figures.averageTrueRange = meanTrueRange(weeks, first, day);
  if (figures.averageTrueRange)
    addLimits(figures, line->now, *figures.averageTrueRange);
  const std::optional<double> recent = meanTrueRange(weeks, fridayBack(day, VOLATILITY_WEEKS), day);
  if (recent && line->now > 0.0)
    figures.autoVolatility = finiteOrNothing(*recent / line->now * 100);
  return figures;
}

Indicators indicatorsOf(const String& code, const Date& day) {
  return indicatorsOf(weeksForFigures(code, day), day);
}

std::optional<TrendLine> trendLineOf(const std::vector<WeeklyPrice>& weeks, const Date& day) {
  const Weeks used = weeksFrom(weeks, fridayBack(day, WEEKS), day);
  const std::optional<Line> line = regression(used, day);
  if (!line)
    return std::nullopt;
  const Date from = used.front().friday;
  return TrendLine{from, line->at(weeksSince(day, from)), day, line->now};
}

std::optional<TrendLine> trendLineOf(const String& code, const Date& day) {
  return trendLineOf(weeksForFigures(code, day), day);
}

std::optional<double> autoMaxPortfolio(double capital, double price, double autoMin) {
  if (!(capital > 0.0) || !(price > autoMin) || !(price > 0.0) || showsAsZero(price - autoMin) ||
      showsAsZero(capital))
    return std::nullopt;
  return finiteOrNothing(capital * PERCENT_AT_RISK / 100 / ((price - autoMin) / price));
}

} // namespace Tallymoor
