#include "widgets/ChartScale.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <cmath>
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;

std::vector<std::string> texts(const TimeStep& step, const Date& first, const Date& last) {
  std::vector<std::string> labels;
  for (const Date& day : step.ticks(first, last, 100))
    labels.push_back(step.label(day, labels.empty()).toUTF8());
  return labels;
}

TEST(ValueScaleTest, TicksStandAtRoundValues) {
  const ValueScale scale = ValueScale::over(37.2, 41.8, 5);
  EXPECT_DOUBLE_EQ(1.0, scale.step);
  EXPECT_THAT(scale.ticks(), ElementsAre(38.0, 39.0, 40.0, 41.0));
  EXPECT_THAT(ValueScale::over(0.0, 100.0, 5).ticks(), ElementsAre(0, 20, 40, 60, 80, 100));
  EXPECT_THAT(ValueScale::over(0.0, 10.0, 4).ticks(), ElementsAre(0, 2.5, 5, 7.5, 10));
}

TEST(ValueScaleTest, TheScaleReachesALittleBeyondTheValues) {
  const ValueScale scale = ValueScale::over(100.0, 200.0, 5);
  EXPECT_DOUBLE_EQ(96.0, scale.low);
  EXPECT_DOUBLE_EQ(204.0, scale.high);
}

TEST(ValueScaleTest, NegativeValuesHaveTicksOnBothSidesOfZero) {
  EXPECT_THAT(ValueScale::over(-30.0, 10.0, 4).ticks(), ElementsAre(-30, -20, -10, 0, 10));
}

TEST(ValueScaleTest, AConstantValueStandsInTheMiddle) {
  for (const double value : {50000.0, -2.0, 0.0, 1e-9, 1e15}) {
    const ValueScale scale = ValueScale::over(value, value, 5);
    EXPECT_NEAR(0.5, (value - scale.low) / (scale.high - scale.low), 1e-6) << value;
    EXPECT_GE(scale.ticks().size(), 2u) << value;
  }
}

TEST(ValueScaleTest, ThereAreAlwaysTwoTicksAndNeverMany) {
  for (const double low : {-1e200, -7e5, -3.3, -1e-7, 0.0, 1e-12, 0.97, 123.45, 9.99e8, 1e300})
    for (const double range : {1e-9, 1e-3, 0.07, 1.0, 49.0, 1e6, 3e100})
      for (const int steps : {0, 1, 2, 5, 8}) {
        const ValueScale scale = ValueScale::over(low, low + range, steps);
        const std::size_t ticks = scale.ticks().size();
        EXPECT_GE(ticks, 2u) << low << " " << range << " " << steps;
        EXPECT_LE(ticks, std::size_t(std::max(steps, 1)) + 3) << low << " " << range << " " << steps;
        EXPECT_TRUE(std::isfinite(scale.low) && std::isfinite(scale.high) && scale.low < scale.high);
      }
}

class TimeStepTest : public ::testing::Test {
protected:
  TestProfile m_profile{"en_AU"};
};

TEST_F(TimeStepTest, WeeksBeginOnMonday) {
  const TimeStep week{TimeStep::WEEKS, 1};
  // 3 March 2026 is a Tuesday.
  EXPECT_THAT(week.ticks(Date(2026, 3, 3), Date(2026, 3, 23), 100),
              ElementsAre(Date(2026, 3, 9), Date(2026, 3, 16), Date(2026, 3, 23)));
  EXPECT_THAT(week.ticks(Date(2026, 3, 2), Date(2026, 3, 2), 100), ElementsAre(Date(2026, 3, 2)));
  EXPECT_THAT(week.ticks(Date(2026, 3, 1), Date(2026, 3, 2), 100), ElementsAre(Date(2026, 3, 2)));
}

TEST_F(TimeStepTest, MonthsBeginOnTheFirst) {
  EXPECT_THAT((TimeStep{TimeStep::MONTHS, 1}).ticks(Date(2026, 1, 1), Date(2026, 3, 3), 100),
              ElementsAre(Date(2026, 1, 1), Date(2026, 2, 1), Date(2026, 3, 1)));
  EXPECT_THAT((TimeStep{TimeStep::MONTHS, 1}).ticks(Date(2025, 12, 2), Date(2026, 1, 31), 100),
              ElementsAre(Date(2026, 1, 1)));
}

TEST_F(TimeStepTest, QuartersAndYearsStandWhereTheCalendarHasThem) {
  EXPECT_THAT((TimeStep{TimeStep::MONTHS, 3}).ticks(Date(2025, 8, 20), Date(2026, 4, 1), 100),
              ElementsAre(Date(2025, 10, 1), Date(2026, 1, 1), Date(2026, 4, 1)));
  EXPECT_THAT((TimeStep{TimeStep::YEARS, 5}).ticks(Date(2008, 1, 1), Date(2022, 1, 1), 100),
              ElementsAre(Date(2010, 1, 1), Date(2015, 1, 1), Date(2020, 1, 1)));
}

TEST_F(TimeStepTest, LabelsTellTheYearOnceAndAtEachJanuary) {
  EXPECT_THAT(texts({TimeStep::MONTHS, 3}, Date(2025, 6, 1), Date(2026, 5, 1)),
              ElementsAre("Jul 2025", "Oct", "2026", "Apr"));
  EXPECT_THAT(texts({TimeStep::MONTHS, 6}, Date(2025, 1, 1), Date(2025, 12, 1)),
              ElementsAre("Jan 2025", "Jul"));
  EXPECT_THAT(texts({TimeStep::YEARS, 1}, Date(2024, 1, 1), Date(2025, 12, 1)), ElementsAre("2024", "2025"));
}

TEST_F(TimeStepTest, DaysAreInTheUsersForm) {
  EXPECT_THAT(texts({TimeStep::DAYS, 2}, Date(2026, 3, 1), Date(2026, 3, 4)),
              ElementsAre(Date(2026, 3, 1).toString(DATE_DISPLAY_LOCAL).toUTF8(),
                          Date(2026, 3, 3).toString(DATE_DISPLAY_LOCAL).toUTF8()));
}

TEST_F(TimeStepTest, ALimitEndsTheTicksAndSoDoesTheCalendar) {
  EXPECT_EQ(7u, (TimeStep{TimeStep::DAYS, 1}).ticks(Date(2000, 1, 1), Date(2026, 1, 1), 7).size());
  EXPECT_THAT((TimeStep{TimeStep::DAYS, 1}).ticks(Date(9999, 12, 30), Date(9999, 12, 31), 100),
              ElementsAre(Date(9999, 12, 30), Date(9999, 12, 31)));
}

} // namespace
} // namespace Tallymoor
