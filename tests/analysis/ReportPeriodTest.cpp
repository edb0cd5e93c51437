#include "analysis/ReportPeriod.h"
#include "foundation/Settings.h"
#include "support/TestProfile.h"
#include "xml/CountryOfResidence.h"
#include <gtest/gtest.h>

namespace Tallymoor {

static void PrintTo(const ReportPeriod& period, std::ostream* out) {
  *out << period.fileName().toUTF8();
}

static bool operator==(const ReportPeriod& a, const ReportPeriod& b) {
  return a.first == b.first && a.last == b.last;
}

namespace {

class ReportPeriodTest : public testing::Test {
protected:
  ReportPeriodTest() { yearStarts("1/7/2000"); }
  ~ReportPeriodTest() override { CountryOfResidence::destroyInstance(); }

  void yearStarts(const std::string& day) {
    Settings::Instance().writeString(u"Config", u"Country", u"Here");
    TestProfile::writeFile(m_profile.configFolder() + u"CountryConfig.xml",
                           "<CountryOptions version=\"1\"><CountryOption Name=\"Here\" FinYearStart=\"" +
                               day + "\"/></CountryOptions>");
    CountryOfResidence::destroyInstance();
  }

  static ReportPeriod days(const char* first, const char* last) {
    return {Date(String(first), DATE_DISPLAY_DMY), Date(String(last), DATE_DISPLAY_DMY)};
  }

  TestProfile m_profile;
};

TEST_F(ReportPeriodTest, TheLastMonthIsTheOneBeforeTheMonthOfToday) {
  EXPECT_EQ(ReportPeriod::lastMonth(Date(2026, 3, 3)), days("1/2/2026", "28/2/2026"));
  EXPECT_EQ(ReportPeriod::lastMonth(Date(2024, 3, 31)), days("1/2/2024", "29/2/2024"));
  EXPECT_EQ(ReportPeriod::lastMonth(Date(2026, 1, 1)), days("1/12/2025", "31/12/2025"));
}

TEST_F(ReportPeriodTest, AMonthIsIncompleteUntilItsLastDayIsOver) {
  EXPECT_EQ(ReportPeriod::lastMonth(Date(2026, 2, 28)), days("1/1/2026", "31/1/2026"));
  EXPECT_EQ(ReportPeriod::lastCalendarYear(Date(2025, 12, 31)), days("1/1/2024", "31/12/2024"));
  EXPECT_EQ(ReportPeriod::lastFinancialYear(Date(2026, 6, 30)), days("1/7/2024", "30/6/2025"));
  EXPECT_EQ(ReportPeriod::lastFinancialYear(Date(2026, 7, 1)), days("1/7/2025", "30/6/2026"));
}

TEST_F(ReportPeriodTest, CalendarQuartersStartInJanuary) {
  EXPECT_EQ(ReportPeriod::lastCalendarQuarter(Date(2026, 3, 31)), days("1/10/2025", "31/12/2025"));
  EXPECT_EQ(ReportPeriod::lastCalendarQuarter(Date(2024, 4, 1)), days("1/1/2024", "31/3/2024"));
  EXPECT_EQ(ReportPeriod::lastCalendarQuarter(Date(2025, 12, 31)), days("1/7/2025", "30/9/2025"));
}

TEST_F(ReportPeriodTest, AYearFromJulyHasItsQuartersInTheSameMonths) {
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(Date(2026, 3, 3)), days("1/10/2025", "31/12/2025"));
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(Date(2026, 7, 1)), days("1/4/2026", "30/6/2026"));
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(Date(2026, 9, 30)), days("1/4/2026", "30/6/2026"));
  EXPECT_EQ(ReportPeriod::lastFinancialYear(Date(2026, 3, 3)), days("1/7/2024", "30/6/2025"));
}

TEST_F(ReportPeriodTest, AYearFromJanuaryIsTheCalendarYear) {
  yearStarts("1/1/2000");
  EXPECT_EQ(ReportPeriod::lastFinancialYear(Date(2026, 3, 3)), days("1/1/2025", "31/12/2025"));
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(Date(2026, 3, 3)), days("1/10/2025", "31/12/2025"));
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(Date(2024, 4, 15)), days("1/1/2024", "31/3/2024"));
}

TEST_F(ReportPeriodTest, AYearFromTheSixthOfAprilHasItsQuartersOnTheSixth) {
  yearStarts("6/4/2000");
  EXPECT_EQ(ReportPeriod::lastFinancialYear(Date(2026, 4, 5)), days("6/4/2024", "5/4/2025"));
  EXPECT_EQ(ReportPeriod::lastFinancialYear(Date(2026, 4, 6)), days("6/4/2025", "5/4/2026"));
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(Date(2026, 4, 5)), days("6/10/2025", "5/1/2026"));
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(Date(2026, 4, 6)), days("6/1/2026", "5/4/2026"));
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(Date(2026, 7, 6)), days("6/4/2026", "5/7/2026"));
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(Date(2026, 1, 1)), days("6/7/2025", "5/10/2025"));
}

TEST_F(ReportPeriodTest, QuartersThatStartOnTheLastDayOfAMonthMeetWithoutGap) {
  yearStarts("31/8/2000");
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(Date(2024, 3, 1)), days("30/11/2023", "28/2/2024"));
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(Date(2024, 5, 31)), days("29/2/2024", "30/5/2024"));
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(Date(2024, 8, 31)), days("31/5/2024", "30/8/2024"));
}

TEST_F(ReportPeriodTest, AYearThatStartsOnALeapDayStartsOnTheFirstOfMarchInOthers) {
  yearStarts("29/2/2000");
  EXPECT_EQ(ReportPeriod::lastFinancialYear(Date(2025, 3, 1)), days("29/2/2024", "28/2/2025"));
  EXPECT_EQ(ReportPeriod::lastFinancialYear(Date(2024, 2, 29)), days("1/3/2023", "28/2/2024"));
}

TEST_F(ReportPeriodTest, TodayIsTheViewDateWhileOneIsSet) {
  Date::setFixedDate(Date(2024, 3, 15));
  EXPECT_EQ(ReportPeriod::lastMonth(), days("1/2/2024", "29/2/2024"));
  EXPECT_EQ(ReportPeriod::lastFinancialQuarter(), days("1/10/2023", "31/12/2023"));
  EXPECT_EQ(ReportPeriod::lastCalendarQuarter(), days("1/10/2023", "31/12/2023"));
  EXPECT_EQ(ReportPeriod::lastFinancialYear(), days("1/7/2022", "30/6/2023"));
  EXPECT_EQ(ReportPeriod::lastCalendarYear(), days("1/1/2023", "31/12/2023"));
}

TEST_F(ReportPeriodTest, BothEndsBelongToThePeriod) {
  const ReportPeriod period = days("1/7/2025", "30/6/2026");
  EXPECT_FALSE(period.contains(Date(2025, 6, 30)));
  EXPECT_TRUE(period.contains(Date(2025, 7, 1)));
  EXPECT_TRUE(period.contains(Date(2026, 6, 30)));
  EXPECT_FALSE(period.contains(Date(2026, 7, 1)));
  EXPECT_EQ(period.dayBefore(), Date(2025, 6, 30));
}

TEST_F(ReportPeriodTest, FilesAreNamedByTheirDays) {
  EXPECT_EQ(days("1/7/2025", "30/6/2026").fileName(), String(u"Report 2025-07-01 to 2026-06-30"));
  EXPECT_EQ(days("9/2/206", "10/12/9999").fileName(), String(u"Report 0206-02-09 to 9999-12-10"));
}

} // namespace
} // namespace Tallymoor
