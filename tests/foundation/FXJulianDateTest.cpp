#include "foundation/FXJulianDate.h"
#include <chrono>
#include <ctime>
#include <gtest/gtest.h>
#include <limits>

namespace Tallymoor {
namespace {

std::string parts(const FXJulianDate& date) {
  return std::to_string(date.year()) + "-" + std::to_string(date.month()) + "-" + std::to_string(date.day());
}

/// Restores the system clock at the end of the test.
struct ClockReset {
  ~ClockReset() { Clock::setToday(0); }
};

TEST(FXJulianDateTest, KnownDayNumbers) {
  EXPECT_EQ(FXJulianDate(1970, 1, 1).julianDay(), 2440588u);
  EXPECT_EQ(FXJulianDate(2000, 1, 1).julianDay(), 2451545u);
  EXPECT_EQ(FXJulianDate(1, 1, 1).julianDay(), 1721426u);
  EXPECT_EQ(FXJulianDate(9999, 12, 31).julianDay(), 5373484u);
}

TEST(FXJulianDateTest, AgreesWithTheStandardLibraryOnEveryDay) {
  using namespace std::chrono;
  for (std::uint32_t jd = 1721426; jd <= 5373484; jd += 1) {
    const sys_days day{days{static_cast<int>(jd) - 2440588}};
    const year_month_day expected{day};
    int y = 0, m = 0, d = 0;
    FXJulianDate::jul2greg(jd, y, m, d);
    ASSERT_EQ(y, int(expected.year()));
    ASSERT_EQ(unsigned(m), unsigned(expected.month()));
    ASSERT_EQ(unsigned(d), unsigned(expected.day()));
    ASSERT_EQ(FXJulianDate(y, m, d).julianDay(), jd);
    ASSERT_EQ(unsigned(FXJulianDate(jd).dayOfWeek()), weekday{day}.c_encoding());
  }
}

TEST(FXJulianDateTest, PartsOutsideTheCalendarCarryOver) {
  EXPECT_EQ(parts(FXJulianDate(2026, 4, 31)), "2026-5-1");
  EXPECT_EQ(parts(FXJulianDate(2026, 2, 29)), "2026-3-1");
  EXPECT_EQ(parts(FXJulianDate(2026, 13, 1)), "2027-1-1");
  EXPECT_EQ(parts(FXJulianDate(2026, 0, 1)), "2025-12-1");
  EXPECT_EQ(parts(FXJulianDate(2026, 3, 0)), "2026-2-28");
  EXPECT_EQ(parts(FXJulianDate(2026, -11, 1)), "2025-1-1");
}

TEST(FXJulianDateTest, ExtremeValuesAreClampedToTheCalendar) {
  constexpr int BIG = std::numeric_limits<int>::max();
  constexpr int SMALL = std::numeric_limits<int>::min();
  EXPECT_EQ(parts(FXJulianDate(BIG, BIG, BIG)), "9999-12-31");
  EXPECT_EQ(parts(FXJulianDate(SMALL, SMALL, SMALL)), "1-1-1");
  EXPECT_EQ(parts(FXJulianDate(0, 0, 0)), "1-1-1");
  FXJulianDate date(9999, 12, 31);
  date.addDays(1);
  EXPECT_EQ(parts(date), "9999-12-31");
  date.addMonths(BIG);
  EXPECT_EQ(parts(date), "9999-12-31");
  date.addMonths(SMALL);
  EXPECT_EQ(parts(date), "1-1-31");
  date.addDays(SMALL);
  EXPECT_EQ(parts(date), "1-1-1");
}

TEST(FXJulianDateTest, AddMonthsClampsToTheLastDay) {
  const struct {
    int year, month, day, months;
    const char* result;
  } rows[] = {
      {2026, 3, 31, -1, "2026-2-28"},   {2024, 3, 31, -1, "2024-2-29"}, {2026, 1, 31, 1, "2026-2-28"},
      {2026, 5, 31, 1, "2026-6-30"},    {2026, 12, 15, 1, "2027-1-15"}, {2026, 1, 15, -1, "2025-12-15"},
      {2026, 1, 15, -13, "2024-12-15"}, {2024, 2, 29, 12, "2025-2-28"}, {2026, 3, 3, 0, "2026-3-3"},
  };
  for (const auto& row : rows) {
    FXJulianDate date(row.year, row.month, row.day);
    date.addMonths(row.months);
    EXPECT_EQ(parts(date), row.result);
  }
}

TEST(FXJulianDateTest, AddDaysAndDaysSince) {
  FXJulianDate date(2024, 2, 28);
  date.addDays(2);
  EXPECT_EQ(parts(date), "2024-3-1");
  date.addDays(-366);
  EXPECT_EQ(parts(date), "2023-3-1");
  EXPECT_EQ(date.daysSince(FXJulianDate(2023, 3, 3)), -2);
  EXPECT_EQ(FXJulianDate(2023, 3, 3).daysSince(date), 2);
}

TEST(FXJulianDateTest, MonthLengths) {
  EXPECT_EQ(FXJulianDate(2024, 2, 1).daysThisMonth(), 29);
  EXPECT_EQ(FXJulianDate(1900, 2, 1).daysThisMonth(), 28);
  EXPECT_EQ(FXJulianDate(2000, 2, 1).daysThisMonth(), 29);
  EXPECT_EQ(FXJulianDate(2026, 12, 31).daysThisMonth(), 31);
  EXPECT_EQ(FXJulianDate(2026, 4, 30).daysThisMonth(), 30);
}

TEST(FXJulianDateTest, MonthNames) {
  EXPECT_STREQ(FXJulianDate::shortMonthName(1), "Jan");
  EXPECT_STREQ(FXJulianDate::shortMonthName(12), "Dec");
  EXPECT_STREQ(FXJulianDate::shortMonthName(0), "");
  EXPECT_STREQ(FXJulianDate::shortMonthName(13), "");
  EXPECT_STREQ(FXJulianDate::monthName(9), "September");
  EXPECT_STREQ(FXJulianDate::monthName(13), "");
  for (int month = 1; month <= 12; ++month)
    EXPECT_EQ(FXJulianDate::monthFromShortName(FXJulianDate::shortMonthName(month)), month);
  EXPECT_EQ(FXJulianDate::monthFromShortName("dEC"), 12);
  EXPECT_EQ(FXJulianDate::monthFromShortName("Sept"), -1);
  EXPECT_EQ(FXJulianDate::monthFromShortName(""), -1);
  EXPECT_EQ(FXJulianDate::monthFromShortName(nullptr), -1);
}

TEST(FXJulianDateTest, ShortYears) {
  EXPECT_EQ(FXJulianDate::ShortYearToFullYear(0), 2000u);
  EXPECT_EQ(FXJulianDate::ShortYearToFullYear(69), 2069u);
  EXPECT_EQ(FXJulianDate::ShortYearToFullYear(70), 1970u);
  EXPECT_EQ(FXJulianDate::ShortYearToFullYear(99), 1999u);
  EXPECT_EQ(FXJulianDate::ShortYearToFullYear(100), 100u);
  EXPECT_EQ(FXJulianDate::ShortYearToFullYear(2006), 2006u);
}

TEST(ClockTest, TodayIsTheDaySetByTheTest) {
  const ClockReset reset;
  Clock::setToday(FXJulianDate(2001, 2, 3).julianDay());
  EXPECT_EQ(parts(FXJulianDate()), "2001-2-3");
}

TEST(ClockTest, TodayIsTheLocalDayOfTheSystemClock) {
  const auto localDay = [] {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return FXJulianDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday).julianDay();
  };
  const std::uint32_t before = localDay();
  const std::uint32_t today = Clock::today();
  const std::uint32_t after = localDay();
  EXPECT_GE(today, before);
  EXPECT_LE(today, after);
}

} // namespace
} // namespace Tallymoor
