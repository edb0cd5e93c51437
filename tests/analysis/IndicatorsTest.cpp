#include "analysis/Indicators.h"
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>

namespace Tallymoor {
namespace {

using Weeks = std::vector<WeeklyPrice>;

/// A Tuesday, four days (4/7 of a week) after Friday, 27 February 2026.
const Date TODAY(2026, 3, 3);
const Date LAST_FRIDAY(2026, 2, 27);
constexpr double SINCE_FRIDAY = 4.0 / 7.0;

/// Weeks up to the last Friday. The close comes from a function of the number of weeks before the last one
/// (0). High and low are 1 above and below the close.
Weeks weeksOf(int count, const std::function<double(int)>& closeBack) {
  Weeks weeks;
  for (int back = count - 1; back >= 0; --back)
    weeks.push_back(
        {LAST_FRIDAY.plusDays(-7 * back), closeBack(back), closeBack(back) + 1, closeBack(back) - 1});
  return weeks;
}

Weeks constantWeeks(int count, double close) {
  return weeksOf(count, [close](int) { return close; });
}

WeeklyPrice& weekBack(Weeks& weeks, std::size_t back) {
  return weeks[weeks.size() - 1 - back];
}

void expectNothing(const Indicators& figures) {
  EXPECT_FALSE(figures.lrValue);
  EXPECT_FALSE(figures.lrRate);
  EXPECT_FALSE(figures.averageTrueRange);
  EXPECT_FALSE(figures.autoMin);
  EXPECT_FALSE(figures.autoMax);
  EXPECT_FALSE(figures.autoVolatility);
}

// ---- The line

TEST(IndicatorsTest, AStraightLineContinuesToTheDayItself) {
  const Indicators figures = indicatorsOf(weeksOf(26, [](int back) { return 100.0 - 2 * back; }), TODAY);
  EXPECT_NEAR(figures.lrValue.value(), 100 + 2 * SINCE_FRIDAY, 1e-9);
  // It was 52 lower 26 weeks ago. The growth of half a year is squared.
  const double now = 100 + 2 * SINCE_FRIDAY;
  const double factor = now / (now - 52);
  EXPECT_NEAR(figures.lrRate.value(), (factor * factor - 1) * 100, 1e-8);
}

TEST(IndicatorsTest, TheLineIsThatOfLeastSquares) {
  // Eight weeks at 10, except the last one at 18: the mean is 11, the slope 28/42 about the middle, which is
  // 3.5 weeks before the last Friday. 11 + (3.5 + 4/7) * 2/3 = 96/7.
  Weeks weeks = constantWeeks(8, 10);
  weeks.back() = {LAST_FRIDAY, 18, 19, 17};
  EXPECT_NEAR(indicatorsOf(weeks, TODAY).lrValue.value(), 96.0 / 7, 1e-12);
}

TEST(IndicatorsTest, SevenWeeksAreTooFewAndEightAreEnough) {
  expectNothing(indicatorsOf(Weeks(), TODAY));
  expectNothing(indicatorsOf(constantWeeks(7, 10), TODAY));
  const Indicators figures = indicatorsOf(constantWeeks(8, 10), TODAY);
  EXPECT_NEAR(figures.lrValue.value(), 10, 1e-12);
  EXPECT_NEAR(figures.lrRate.value(), 0, 1e-9);
  EXPECT_NEAR(figures.averageTrueRange.value(), 2, 1e-12);
  EXPECT_NEAR(figures.autoMin.value(), 6, 1e-12);
  EXPECT_NEAR(figures.autoMax.value(), 14, 1e-12);
  EXPECT_NEAR(figures.autoVolatility.value(), 20, 1e-12);
}

TEST(IndicatorsTest, SevenOfTheLastTwentySixWeeksAreTooFewEvenWithEarlierOnes) {
  Weeks weeks = constantWeeks(40, 10);
  weeks.erase(weeks.end() - 19, weeks.end()); // 21 remain, 7 of them recent.
  expectNothing(indicatorsOf(weeks, TODAY));
}

TEST(IndicatorsTest, OnlyTheLastTwentySixWeeksMakeTheLine) {
  Weeks weeks = constantWeeks(27, 10);
  weekBack(weeks, 26).close = 1000;
  EXPECT_NEAR(indicatorsOf(weeks, TODAY).lrValue.value(), 10, 1e-12);
  weekBack(weeks, 25).close = 1000;
  EXPECT_LT(indicatorsOf(weeks, TODAY).lrValue.value(), 9);
}

TEST(IndicatorsTest, AWeekThatIsMissingLeavesTheOthersInTheirPlaces) {
  Weeks weeks = weeksOf(26, [](int back) { return 100.0 - 2 * back; });
  weeks.erase(weeks.begin() + 20);
  EXPECT_NEAR(indicatorsOf(weeks, TODAY).lrValue.value(), 100 + 2 * SINCE_FRIDAY, 1e-9);
}

TEST(IndicatorsTest, TheWeekOfTheDayAndLaterOnesAreIgnored) {
  Weeks weeks = constantWeeks(26, 10);
  weeks.push_back({LAST_FRIDAY.plusDays(7), 500, 500, 500});
  weeks.push_back({LAST_FRIDAY.plusDays(14), 500, 500, 500});
  EXPECT_NEAR(indicatorsOf(weeks, TODAY).lrValue.value(), 10, 1e-12);
  EXPECT_NEAR(indicatorsOf(weeks, TODAY).averageTrueRange.value(), 2, 1e-12);
}

TEST(IndicatorsTest, AWeekIsCompleteAfterItsFriday) {
  Weeks weeks = constantWeeks(8, 10);
  expectNothing(indicatorsOf(weeks, LAST_FRIDAY));
  EXPECT_TRUE(indicatorsOf(weeks, LAST_FRIDAY.plusDays(1)).lrValue);
  EXPECT_TRUE(indicatorsOf(weeks, LAST_FRIDAY.plusDays(2)).lrValue);
}

TEST(IndicatorsTest, OnALaterDayTheLineIsLongerByItsPartOfAWeek) {
  const Weeks weeks = weeksOf(26, [](int back) { return 100.0 - 7 * back / 2.0; });
  EXPECT_NEAR(indicatorsOf(weeks, LAST_FRIDAY.plusDays(1)).lrValue.value(), 100.5, 1e-9);
  EXPECT_NEAR(indicatorsOf(weeks, LAST_FRIDAY.plusDays(7)).lrValue.value(), 103.5, 1e-9);
}

TEST(IndicatorsTest, ALineAtOrBelowZeroHasNoRate) {
  // It is negative now: -3 per week.
  const Indicators fallen = indicatorsOf(weeksOf(26, [](int back) { return 1.0 + 3 * back; }), TODAY);
  EXPECT_LT(fallen.lrValue.value(), 0);
  EXPECT_FALSE(fallen.lrRate);
  EXPECT_FALSE(fallen.autoVolatility);
  // It was negative 26 weeks ago: a young stock that rose fast.
  const Indicators risen = indicatorsOf(weeksOf(8, [](int back) { return 80.0 - 10 * back; }), TODAY);
  EXPECT_GT(risen.lrValue.value(), 80);
  EXPECT_FALSE(risen.lrRate);
  EXPECT_TRUE(risen.autoVolatility);
}

// ---- The ranges

TEST(IndicatorsTest, ARangeReachesToTheCloseOfTheWeekBefore) {
  Weeks weeks = constantWeeks(8, 10);                           // Ranges of 2.
  weekBack(weeks, 5) = {weekBack(weeks, 5).friday, 14, 15, 13}; // From 10 up to 15.
  weekBack(weeks, 4) = {weekBack(weeks, 4).friday, 10, 11, 9};  // From 14 down to 9.
  EXPECT_NEAR(indicatorsOf(weeks, TODAY).averageTrueRange.value(), (6 * 2 + 5 + 5) / 8.0, 1e-12);
}

TEST(IndicatorsTest, TheFirstRangeReachesToTheCloseBeforeItWhereThatIsKnown) {
  EXPECT_NEAR(indicatorsOf(constantWeeks(26, 10), TODAY).averageTrueRange.value(), 2, 1e-12);
  Weeks weeks = constantWeeks(27, 10);
  weeks.front() = {weeks.front().friday, 37, 1000, 1};
  // From 9 to 37 instead of its own range of 2. The first week's range does not count.
  EXPECT_NEAR(indicatorsOf(weeks, TODAY).averageTrueRange.value(), (25 * 2 + 28) / 26.0, 1e-12);
  Weeks more = constantWeeks(28, 10);
  more.front() = {more.front().friday, 1000, 1000, 1};
  EXPECT_NEAR(indicatorsOf(more, TODAY).averageTrueRange.value(), 2, 1e-12);
}

TEST(IndicatorsTest, AfterAMissingWeekTheRangeReachesToTheLastCloseThereIs) {
  Weeks weeks = constantWeeks(26, 10);
  for (std::size_t back = 0; back < 10; ++back)
    weekBack(weeks, back) = {weekBack(weeks, back).friday, 20, 21, 19};
  weeks.erase(weeks.end() - 10);
  // The week after the gap ranges from 10 to 21.
  EXPECT_NEAR(indicatorsOf(weeks, TODAY).averageTrueRange.value(), (24 * 2 + 11) / 25.0, 1e-12);
}

TEST(IndicatorsTest, VolatilityIsOfTheLastTwoWeeksAlone) {
  Weeks weeks = constantWeeks(26, 10);
  weekBack(weeks, 2).high = 100;
  weekBack(weeks, 1).high = 13; // 4
  weekBack(weeks, 0).low = 2;   // 9
  EXPECT_NEAR(indicatorsOf(weeks, TODAY).autoVolatility.value(), 6.5 / 10 * 100, 1e-9);
}

TEST(IndicatorsTest, VolatilityReachesToTheCloseBeforeTheTwoWeeks) {
  Weeks weeks = constantWeeks(26, 10);
  weekBack(weeks, 2).close = 15;
  const Indicators figures = indicatorsOf(weeks, TODAY);
  // 15 to 9 and 11 to 9.
  EXPECT_NEAR(figures.autoVolatility.value(), (6 + 2) / 2.0 / figures.lrValue.value() * 100, 1e-9);
}

TEST(IndicatorsTest, VolatilityUsesTheAvailableOfTheLastTwoWeeks) {
  Weeks weeks = constantWeeks(26, 10);
  weekBack(weeks, 1).high = 14; // 5
  weeks.pop_back();
  EXPECT_NEAR(indicatorsOf(weeks, TODAY).autoVolatility.value(), 50, 1e-9);
  weeks.pop_back();
  const Indicators figures = indicatorsOf(weeks, TODAY);
  EXPECT_FALSE(figures.autoVolatility);
  EXPECT_NEAR(figures.lrValue.value(), 10, 1e-12);
}

TEST(IndicatorsTest, AConstantPriceHasNoRangeAndLimitsAtThePrice) {
  Weeks weeks = constantWeeks(26, 7.25);
  for (WeeklyPrice& week : weeks)
    week.high = week.low = week.close;
  const Indicators figures = indicatorsOf(weeks, TODAY);
  EXPECT_NEAR(figures.lrValue.value(), 7.25, 1e-12);
  EXPECT_NEAR(figures.lrRate.value(), 0, 1e-9);
  EXPECT_DOUBLE_EQ(figures.averageTrueRange.value(), 0);
  EXPECT_NEAR(figures.autoMin.value(), 7.25, 1e-12);
  EXPECT_NEAR(figures.autoMax.value(), 7.25, 1e-12);
  EXPECT_DOUBLE_EQ(figures.autoVolatility.value(), 0);
}

TEST(IndicatorsTest, TheMinimumIsNeverBelowZero) {
  const Indicators figures = indicatorsOf(constantWeeks(26, 3), TODAY);
  EXPECT_NEAR(figures.autoMax.value(), 7, 1e-12);
  EXPECT_DOUBLE_EQ(figures.autoMin.value(), 0);
}

TEST(IndicatorsTest, NonFiniteResultsAreEmpty) {
  Weeks endless = constantWeeks(26, 10);
  endless[3].close = std::numeric_limits<double>::infinity();
  expectNothing(indicatorsOf(endless, TODAY));
  Weeks wide = constantWeeks(26, 10);
  wide[3].high = std::numeric_limits<double>::infinity();
  const Indicators figures = indicatorsOf(wide, TODAY);
  EXPECT_TRUE(figures.lrValue);
  EXPECT_FALSE(figures.averageTrueRange);
  EXPECT_FALSE(figures.autoMin);
  EXPECT_FALSE(figures.autoMax);
}

// ---- The line of a chart

TEST(IndicatorsTest, TheTrendLineReachesFromItsFirstWeekToTheDay) {
  const TrendLine line = trendLineOf(weeksOf(30, [](int back) { return 100.0 - 2 * back; }), TODAY).value();
  EXPECT_EQ(line.from, LAST_FRIDAY.plusDays(-25 * 7));
  EXPECT_NEAR(line.fromValue, 50, 1e-9);
  EXPECT_EQ(line.to, TODAY);
  EXPECT_NEAR(line.toValue, 100 + 2 * SINCE_FRIDAY, 1e-9);
  EXPECT_FALSE(trendLineOf(constantWeeks(7, 10), TODAY));
}

// ---- The position to risk

TEST(IndicatorsTest, TheLargestPositionLosesTwoPercentOfTheCapitalAtTheMinimum) {
  // A fall from 10 to 8 loses a fifth of 10000, which is 2000.
  EXPECT_NEAR(autoMaxPortfolio(100000, 10, 8).value(), 10000, 1e-9);
  EXPECT_NEAR(autoMaxPortfolio(100000, 10, 0).value(), 2000, 1e-9);
}

TEST(IndicatorsTest, WithoutAFallOrAnythingToLoseThereIsNoLargestPosition) {
  EXPECT_FALSE(autoMaxPortfolio(100000, 8, 8));
  EXPECT_FALSE(autoMaxPortfolio(100000, 7, 8));
  EXPECT_FALSE(autoMaxPortfolio(100000, 8.00004, 8));
  EXPECT_FALSE(autoMaxPortfolio(0, 10, 8));
  EXPECT_FALSE(autoMaxPortfolio(-500, 10, 8));
  EXPECT_FALSE(autoMaxPortfolio(100000, 0, -1));
  EXPECT_FALSE(autoMaxPortfolio(std::numeric_limits<double>::quiet_NaN(), 10, 8));
  EXPECT_FALSE(autoMaxPortfolio(100000, std::numeric_limits<double>::infinity(), 8));
}

} // namespace
} // namespace Tallymoor
