#include "market/HistoryRange.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

class HistoryRangeTest : public testing::Test {
protected:
  HistoryRangeTest() { Clock::setToday(m_today.julianDay()); }
  ~HistoryRangeTest() override {
    Date::clearFixedDate();
    Clock::setToday(0);
  }

  static void expectRange(const HistoryRange& range, const Date& start, const Date& end) {
    EXPECT_EQ(range.start.toString(DATE_DISPLAY_YMD), start.toString(DATE_DISPLAY_YMD));
    EXPECT_EQ(range.end.toString(DATE_DISPLAY_YMD), end.toString(DATE_DISPLAY_YMD));
  }

  const Date m_today{2006, 11, 15};
};

TEST_F(HistoryRangeTest, FromADayReachesAsFarAsAPageOfTradingDays) {
  expectRange(HistoryRange::around(Date(2006, 1, 2), false, 100), Date(2006, 1, 2), Date(2006, 5, 22));
}

TEST_F(HistoryRangeTest, CountsWholeCalendarDaysOnly) {
  // 9 trading days are 12.6 calendar days.
  expectRange(HistoryRange::around(Date(2006, 1, 2), false, 9), Date(2006, 1, 2), Date(2006, 1, 14));
}

TEST_F(HistoryRangeTest, FromADayEndsToday) {
  expectRange(HistoryRange::around(Date(2006, 10, 1), false, 100), Date(2006, 10, 1), m_today);
}

TEST_F(HistoryRangeTest, FromADayCloseToTodayReachesBackAFortnight) {
  expectRange(HistoryRange::around(Date(2006, 11, 10), false, 100), Date(2006, 11, 1), m_today);
  expectRange(HistoryRange::around(Date(2006, 11, 2), false, 100), Date(2006, 11, 1), m_today);
  // Exactly a fortnight is long enough.
  expectRange(HistoryRange::around(Date(2006, 11, 1), false, 100), Date(2006, 11, 1), m_today);
  expectRange(HistoryRange::around(Date(2006, 10, 31), false, 100), Date(2006, 10, 31), m_today);
}

TEST_F(HistoryRangeTest, FromADayThatEndsExactlyTodayStaysShort) {
  expectRange(HistoryRange::around(Date(2006, 11, 8), false, 5), Date(2006, 11, 8), m_today);
}

TEST_F(HistoryRangeTest, UpToADayReachesBackAsFarAsAPage) {
  expectRange(HistoryRange::around(Date(2006, 6, 30), true, 100), Date(2006, 2, 10), Date(2006, 6, 30));
}

TEST_F(HistoryRangeTest, UpToARecentDayGoesOnToToday) {
  expectRange(HistoryRange::around(m_today, true, 100), Date(2006, 7, 3), m_today);
  expectRange(HistoryRange::around(Date(2006, 11, 11), true, 100), Date(2006, 6, 29), m_today);
  // Five days ago is not recent.
  expectRange(HistoryRange::around(Date(2006, 11, 10), true, 100), Date(2006, 6, 23), Date(2006, 11, 10));
}

TEST_F(HistoryRangeTest, TakesTheViewDateForToday) {
  Date::setFixedDate(Date(2006, 3, 15));
  expectRange(HistoryRange::around(Date(2006, 3, 10), false, 100), Date(2006, 3, 1), Date(2006, 3, 15));
  expectRange(HistoryRange::around(Date(2006, 3, 15), true, 5), Date(2006, 3, 13), Date(2006, 3, 15));
}

TEST_F(HistoryRangeTest, ClampsTheValueOfTheDocument) {
  expectRange(HistoryRange::around(Date(2006, 6, 30), true, -50), Date(2006, 6, 30), Date(2006, 6, 30));
  const HistoryRange century = HistoryRange::around(Date(2006, 6, 30), true, 2000000000);
  EXPECT_EQ(century.start.year(), 1906);
}

} // namespace
} // namespace Tallymoor
