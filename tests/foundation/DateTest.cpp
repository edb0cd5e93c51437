#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "support/MessageOf.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

class DateTest : public testing::Test {
protected:
  /// The message thrown when reading the text. Checks that the date is unchanged.
  static String refusal(const String& text, int format) {
    Date date(2020, 5, 6);
    const String message = messageOf([&] { date.fromString(text, format); });
    EXPECT_EQ(date, Date(2020, 5, 6));
    return message;
  }

  TestProfile profile;
};

TEST_F(DateTest, WritesEveryFormat) {
  const Date date(2006, 3, 3);
  EXPECT_EQ(date.toString(0), u"3/3/2006");
  EXPECT_EQ(date.toString(1), u"3/3/2006");
  EXPECT_EQ(Date(2006, 3, 14).toString(2), u"3/14/2006");
  EXPECT_EQ(Date(2006, 3, 14).toString(3), u"2006/3/14");
  EXPECT_EQ(date.toString(5), u"3-Mar-06");
  EXPECT_EQ(Date(9, 3, 3).toString(5), u"3-Mar-9");
  EXPECT_EQ(date.toString(6), u"03/03/2006");
  EXPECT_EQ(Date(u"31/12/1999", 0).toString(5), u"31-Dec-99");
}

TEST_F(DateTest, UnknownFormatsAreNotWritten) {
  for (const int format : {4, 7, -1})
    EXPECT_EQ(messageOf([&] { Date(2006, 3, 3).toString(format); }), u"Date::toString - unknown format");
}

TEST_F(DateTest, ReadsEveryFormat) {
  const Date date(2006, 3, 14);
  EXPECT_EQ(Date(u"14/3/2006", 0), date);
  EXPECT_EQ(Date(u"14/03/2006", 1), date);
  EXPECT_EQ(Date(u"3/14/2006", 2), date);
  EXPECT_EQ(Date(u"2006/3/14", 3), date);
  EXPECT_EQ(Date(u"14-Mar-06", 5), date);
  EXPECT_EQ(Date(u"14-mar-2006", 5), date);
  EXPECT_EQ(Date(u"14-Mar-76", 5), Date(1976, 3, 14));
  EXPECT_EQ(Date(u"14/03/2006", 6), date);
}

TEST_F(DateTest, PartsAreNotChecked) {
  EXPECT_EQ(Date(u"31/2/2006", 0), Date(2006, 3, 3));
  EXPECT_EQ(Date(u" 5 /6/2006 and more/", 0), Date(2006, 6, 5));
}

TEST_F(DateTest, RefusalsSayWhy) {
  EXPECT_EQ(refusal(u"2006", 0), u"Date::fromString - no separator: 2006");
  EXPECT_EQ(refusal(String(100000, u'9'), 0),
            u"Date::fromString - no separator: " + String(80, u'9') + u"...");
  EXPECT_EQ(refusal(u"3-3-2006", 0), u"Date::fromString - no separator: 3-3-2006");
  EXPECT_EQ(refusal(u"3/2006", 0), u"Date::fromString - no separator2: 3/2006");
  EXPECT_EQ(refusal(u"3-Mar", 5), u"Date::fromString - no separator2: 3-Mar");
  EXPECT_EQ(refusal(u"3/Mar/06", 5), u"Date::fromString - no separator: 3/Mar/06");
  EXPECT_EQ(refusal(u"3-Mrz-06", 5), u"Date::fromString - DATE_DISPLAY_MIDDATE1 unknown month: 3-Mrz-06");
  EXPECT_EQ(refusal(u"3/3/2006", 4), u"Date::fromString - bad format: 3/3/2006");
  EXPECT_EQ(refusal(u"3/3/2006", 7), u"Date::fromString - bad format: 3/3/2006");
  EXPECT_EQ(refusal(u"3.3.2006", 4), u"Date::fromString - no separator: 3.3.2006");
  EXPECT_EQ(refusal(u"3/3/2006", 6), u"Date::fromString - not in local format: 3/3/2006");
}

TEST_F(DateTest, TheConstructorRefusesToo) {
  EXPECT_THROW(Date(u"nonsense", 0), Exception);
}

TEST_F(DateTest, TheViewDateIsTheDefaultDate) {
  const Date sunday(2026, 2, 1);
  EXPECT_FALSE(Date::hasFixedDate());
  Date::setFixedDate(sunday);
  EXPECT_TRUE(Date::hasFixedDate());
  EXPECT_EQ(Date(), sunday);
  EXPECT_TRUE(Date().isWeekend());
  EXPECT_EQ(Date::todayToString(0), u"1/2/2026");
  EXPECT_EQ(Date::realToday(), Date(2026, 3, 3));
  EXPECT_EQ(FXJulianDate().julianDay(), Date(2026, 3, 3).julianDay());
  Date::clearFixedDate();
  EXPECT_FALSE(Date::hasFixedDate());
  EXPECT_EQ(Date(), Date(2026, 3, 3));
  EXPECT_FALSE(Date().isWeekend());
}

TEST_F(DateTest, AViewDateDoesNotAffectOtherDates) {
  Date::setFixedDate(Date(2020, 1, 1));
  EXPECT_EQ(Date(u"2/3/2021", 0), Date(2021, 3, 2));
  EXPECT_EQ(Date(2021, 3, 2).toString(0), u"2/3/2021");
}

TEST_F(DateTest, ComparesByDay) {
  const Date a(2026, 3, 3);
  const Date b(2026, 3, 4);
  EXPECT_TRUE(a == Date(2026, 3, 3));
  EXPECT_TRUE(a != b);
  EXPECT_TRUE(a < b);
  EXPECT_TRUE(b > a);
  EXPECT_TRUE(a <= a);
  EXPECT_TRUE(a >= a);
  EXPECT_FALSE(b <= a);
  Date c = b;
  c = *&c;
  EXPECT_EQ(c, b);
}

TEST_F(DateTest, WeekHelpers) {
  const struct {
    int day; // Day of March 2026; the 1st is a Sunday.
    int beforeWeekend;
    int lastFriday;
    bool weekend;
  } rows[] = {{8, 9, 2, true},   {9, 3, 3, false},  {10, 4, 4, false}, {11, 5, 5, false},
              {12, 6, 6, false}, {13, 7, 7, false}, {14, 8, 1, true}};
  for (const auto& row : rows) {
    const Date date(2026, 3, row.day);
    EXPECT_EQ(date.daysSince(date.fridayBeforeLastWeekend()), row.beforeWeekend) << row.day;
    EXPECT_EQ(date.daysSince(date.lastFriday()), row.lastFriday) << row.day;
    EXPECT_EQ(date.fridayBeforeLastWeekend().dayOfWeek(), 5);
    EXPECT_EQ(date.lastFriday().dayOfWeek(), 5);
    EXPECT_EQ(date.isWeekend(), row.weekend) << row.day;
  }
}

TEST_F(DateTest, Steps) {
  const Date date(2026, 1, 31);
  EXPECT_EQ(date.plusDays(1), Date(2026, 2, 1));
  EXPECT_EQ(date.plusMonths(1), Date(2026, 2, 28));
  EXPECT_EQ(Date(2024, 2, 3).lastDayOfMonth(), Date(2024, 2, 29));
  EXPECT_EQ(date, Date(2026, 1, 31));
}

} // namespace
} // namespace Tallymoor
