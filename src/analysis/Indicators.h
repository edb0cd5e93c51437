#pragma once
#include "analysis/WeeklyPrices.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include <optional>
#include <vector>

namespace Tallymoor {

// The figures by which an investor sets exit limits for a stock: where its price stands apart from the noise
// of the weeks, how fast it grows, how far it usually swings, limits made of these, and how much to put into
// it. All are derived from weekly prices (see WeeklyPrices.h for what a week is) and as of a day, which is
// the view date while one is set. Nothing is kept: a stock's figures take some tens of microseconds
// (benchmarks/CapitalRecordBenchmark), so all columns of a long table a few milliseconds, and they always
// agree with the prices.
//
// A stock that is too young has no figures rather than rough ones. A week without prices leaves a gap: the
// line then goes through the other weeks at their places in time. A share that was split has no figures until
// eight weeks have gone by, as if it were young.

/// The usual numbers of the indicators.
namespace IndicatorRules {
/// Half a year of full weeks: enough that one bad week moves the line little, and the span of "LR Rate".
constexpr int WEEKS = 26;
/// Below this there is no figure at all: a line through fewer points says more of their chance than of a
/// trend.
constexpr int FEWEST_WEEKS = 8;
/// The range from which "Auto Volatility" is made.
constexpr int VOLATILITY_WEEKS = 2;
/// Weeks' ranges between the line and a limit; twice the true range is the usual distance of a stop.
constexpr double RANGES_TO_LIMIT = 2.0;
/// Percent of the capital that one share may lose before it is sold (the "2% rule" of position sizing).
constexpr double PERCENT_AT_RISK = 2.0;
} // namespace IndicatorRules

/// Unavailable figures are nothing; none is ever infinite.
struct Indicators {
  /// Ordinary least squares through the weekly closes, each at its Friday, evaluated at the day itself: the
  /// weeks since the last Friday are a fraction. A price.
  std::optional<double> lrValue;
  /// The line now against the line 26 weeks ago, annualised over half a year. Percent a year; nothing where
  /// the line lies at or below zero at either end.
  std::optional<double> lrRate;
  /// The mean of the weekly true ranges. The true range is J. Welles Wilder's (New Concepts in Technical
  /// Trading Systems, 1978): high less low, extended to the close of the week before. The plain mean stands
  /// in place of his smoothing, so that the range and the line are of the same weeks. The first week is
  /// extended to the close before it where that is known. A price.
  std::optional<double> averageTrueRange;
  /// The line less and plus two average ranges. A price can't fall below nothing, so neither does the
  /// minimum.
  std::optional<double> autoMin;
  std::optional<double> autoMax;
  /// The mean true range of the last two full weeks in percent of the line; nothing where neither week has
  /// prices, or the line is not above zero.
  std::optional<double> autoVolatility;
};

/// Of the weeks given, those of the last 26 full weeks before the day are used, and the week before them for
/// its close alone.
Indicators indicatorsOf(const std::vector<WeeklyPrice>& weeks, const Date& day);
/// From the price cache; throws NotYetKnown while prices are being fetched, see recentWeeks.
Indicators indicatorsOf(const String& code, const Date& day);

/// The regression line as drawn in a chart: from the first of its weeks to the day.
struct TrendLine {
  Date from;
  double fromValue;
  Date to;
  double toValue;
};
std::optional<TrendLine> trendLineOf(const std::vector<WeeklyPrice>& weeks, const Date& day);
std::optional<TrendLine> trendLineOf(const String& code, const Date& day);

/// Money to have in the share at most, so that selling at the automatic minimum loses no more than 2% of the
/// capital: that 2%, divided by the fraction which the price then has fallen. Nothing where there is no
/// fall, no price or no capital.
std::optional<double> autoMaxPortfolio(double capital, double price, double autoMin);

} // namespace Tallymoor
