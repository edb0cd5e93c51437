#include "books/BooksTest.h"
#include "foundation/Exception.h"
#include <limits>

namespace Tallymoor {
namespace {

/// Today is Tuesday, 3 March 2026. With a period of 10, the recent days are 17 February to 2 March, and the
/// days before them are 3 to 16 February.
class TrendTest : public BooksTest {
protected:
  TrendTest() { user().setComparisonIndex(u"^AORD"); }

  void setWeekdays(const Date& first, const Date& last, double close) {
    for (Date day = first; day <= last; day.addDays(1))
      if (!day.isWeekend())
        setPrice(u"^AORD", day, close);
  }
};

TEST_F(TrendTest, TwiceThePeriodOfWeekdaysBeforeTodayIsNeededAndNoMore) {
  setWeekdays(Date(2026, 2, 3), Date(2026, 3, 2), 4000);
  EXPECT_DOUBLE_EQ(user().computeIndexMovingAverage(10), 4000);
  // 22 weekdays are needed, but only 20 are available.
  EXPECT_THROW(user().computeIndexMovingAverage(11), Exception);
}

TEST_F(TrendTest, TodaysCloseAndThoseOfWeekendsPlayNoPart) {
  setWeekdays(Date(2026, 2, 3), Date(2026, 3, 2), 4000);
  setPrice(u"^AORD", m_today, 9000);
  for (const Date& day : {Date(2026, 2, 7), Date(2026, 2, 22), Date(2026, 3, 1)})
    setPrice(u"^AORD", day, 1);
  EXPECT_DOUBLE_EQ(user().computeIndexMovingAverage(10), 4000);
}

TEST_F(TrendTest, AConstantCloseIsTheResultForAnyPeriod) {
  setWeekdays(Date(2025, 6, 1), Date(2026, 3, 2), 5123.4);
  for (double period : {1.0, 2.0, 7.0, 10.0, 30.0, 90.0})
    EXPECT_NEAR(user().computeIndexMovingAverage(period), 5123.4, 1e-8) << period;
}

TEST_F(TrendTest, TheNewestOfTenDaysWeighsTwoElevenths) {
  setWeekdays(Date(2026, 2, 3), Date(2026, 2, 27), 1100);
  setPrice(u"^AORD", Date(2026, 3, 2), 2200);
  EXPECT_NEAR(user().computeIndexMovingAverage(10), 1100 + 1100 * 2.0 / 11, 1e-9);
}

TEST_F(TrendTest, TheStartIsTheMeanOfTheDaysBeforeTheRecentOnes) {
  // With N = 2 the weight is 2/3; recent: 27 February, 2 March; before those: 25 and 26 February.
  setPrice(u"^AORD", Date(2026, 2, 25), 100);
  setPrice(u"^AORD", Date(2026, 2, 26), 200);
  setPrice(u"^AORD", Date(2026, 2, 27), 300);
  setPrice(u"^AORD", Date(2026, 3, 2), 600);
  // 150, then 250, then 250 + 350 * 2 / 3.
  EXPECT_NEAR(user().computeIndexMovingAverage(2), 483.0 + 1.0 / 3, 1e-9);
}

TEST_F(TrendTest, APeriodOfOneDayIsYesterdaysClose) {
  setPrice(u"^AORD", Date(2026, 2, 27), 300);
  setPrice(u"^AORD", Date(2026, 3, 2), 600);
  EXPECT_DOUBLE_EQ(user().computeIndexMovingAverage(1), 600);
  for (double period : {0.0, -5.0, 1.9, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_DOUBLE_EQ(user().computeIndexMovingAverage(period), 600) << period;
}

TEST_F(TrendTest, ASecondRequestOnTheDayAsksForNoPrice) {
  setWeekdays(Date(2026, 2, 3), Date(2026, 3, 2), 4000);
  EXPECT_DOUBLE_EQ(user().indexMovingAverage(10), 4000);
  m_prices.clear();
  EXPECT_DOUBLE_EQ(user().indexMovingAverage(10), 4000);
  EXPECT_DOUBLE_EQ(user().indexMovingAverage(10.7), 4000);
  EXPECT_THROW(user().indexMovingAverage(5), Exception);
  EXPECT_THROW(user().computeIndexMovingAverage(10), Exception);
}

TEST_F(TrendTest, AFailureIsNotKept) {
  EXPECT_THROW(user().indexMovingAverage(2), Exception);
  setWeekdays(Date(2026, 2, 3), Date(2026, 3, 2), 4000);
  EXPECT_DOUBLE_EQ(user().indexMovingAverage(2), 4000);
}

TEST_F(TrendTest, EachDayHasItsOwn) {
  setWeekdays(Date(2026, 2, 3), Date(2026, 2, 26), 4000);
  setWeekdays(Date(2026, 2, 27), Date(2026, 3, 2), 5000);
  const double today = user().indexMovingAverage(2);
  EXPECT_GT(today, 4500);
  Date::setFixedDate(Date(2026, 2, 26));
  EXPECT_DOUBLE_EQ(user().indexMovingAverage(2), 4000);
  Date::clearFixedDate();
  EXPECT_EQ(user().indexMovingAverage(2), today);
}

TEST_F(TrendTest, AnotherIndexForgetsTheOldOnes) {
  setWeekdays(Date(2026, 2, 3), Date(2026, 3, 2), 4000);
  EXPECT_DOUBLE_EQ(user().indexMovingAverage(2), 4000);
  setPrices(u"^FTSE", Date(2026, 2, 3), Date(2026, 3, 2), 10000);
  user().setComparisonIndex(u"^FTSE");
  EXPECT_DOUBLE_EQ(user().indexMovingAverage(2), 10000);
}

TEST_F(TrendTest, WithoutAnIndexThereIsNoTrend) {
  user().setComparisonIndex(u"");
  EXPECT_EQ(user().indexMovingAverage(10), 0.0);
  EXPECT_EQ(user().computeIndexMovingAverage(10), 0.0);
}

} // namespace
} // namespace Tallymoor
