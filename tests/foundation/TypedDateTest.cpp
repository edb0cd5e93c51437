#include "foundation/TypedDate.h"
#include "foundation/LinuxPlatform.h"
#include "foundation/ShortDatePicture.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>
#include <optional>

namespace Tallymoor {
namespace {

std::optional<Date> typedIn(const char* locale, const char16_t* text) {
  LinuxPlatformOptions options;
  options.locale = locale;
  LinuxPlatform platform(options);
  Date date(2001, 2, 3);
  if (platform.readTypedDate(text, date))
    return date;
  EXPECT_EQ(Date(2001, 2, 3), date) << "a failed read leaves the date alone";
  return std::nullopt;
}

const Date NOVEMBER(2023, 11, 1);

class TypedDateTest : public ::testing::Test {};

TEST_F(TypedDateTest, DayAndMonthStandInTheOrderOfTheLocale) {
  const struct {
    const char* locale;
    std::vector<const char16_t*> firstOfNovember;
  } rows[] = {
      {"en_AU",
       {u"1/11/2023", u"01/11/2023", u"01/11/23", u"1/11/23", u"1.11.2023", u"1-11-2023", u"1 11 2023"}},
      {"en_US", {u"11/1/2023", u"11/01/2023", u"11/01/23", u"11/1/23", u"11.1.2023", u"11-1-2023"}},
      {"de_DE", {u"1.11.2023", u"01.11.2023", u"01.11.23", u"1.11.23", u"1/11/2023", u"1. 11. 2023"}},
      {"fr_FR", {u"01/11/2023", u"1/11/2023", u"01/11/23", u"1.11.2023"}},
      {"ja_JP", {u"2023/11/1", u"2023/11/01", u"23/11/01", u"11/1/2023"}},
      {"sv_SE", {u"2023-11-01", u"23-11-01", u"1/11/2023"}},
      {"ar_EG", {u"1/11/2023", u"\u0661/\u0661\u0661/\u0662\u0660\u0662\u0663"}},
  };
  for (const auto& row : rows)
    for (const char16_t* text : row.firstOfNovember)
      EXPECT_EQ(NOVEMBER, typedIn(row.locale, text)) << row.locale << " " << String(text).toUTF8();
}

TEST_F(TypedDateTest, AYearOfFourDigitsInFrontIsFollowedByTheMonthEverywhere) {
  for (const char* locale : {"en_AU", "en_US", "de_DE", "fr_FR", "ja_JP"})
    for (const char16_t* text : {u"2023-11-01", u"2023/11/1", u"2023.11.01"})
      EXPECT_EQ(NOVEMBER, typedIn(locale, text)) << locale << " " << String(text).toUTF8();
}

TEST_F(TypedDateTest, EnglishNamesOfMonthsAreReadEverywhere) {
  for (const char* locale : {"en_AU", "en_US", "de_DE", "fr_FR", "ja_JP", "tr_TR"})
    for (const char16_t* text : {u"1 Nov 2023", u"1 NOVEMBER 2023", u"01-nov-2023", u"1nov2023",
                                 u"Nov 1, 2023", u"1. Nov. 2023", u"2023 Nov 1", u"1 Novem 2023"})
      EXPECT_EQ(NOVEMBER, typedIn(locale, text)) << locale << " " << String(text).toUTF8();
  for (const char* locale : {"en_AU", "en_US", "de_DE", "fr_FR"})
    EXPECT_EQ(NOVEMBER, typedIn(locale, u"1-Nov-23")) << locale;
  EXPECT_EQ(Date(2023, 9, 30), typedIn("en_AU", u"30 Sept 2023"));
  EXPECT_EQ(Date(2023, 9, 30), typedIn("en_AU", u"30 Sep 2023"));
}

TEST_F(TypedDateTest, NamesOfMonthsInTheLanguageOfTheLocale) {
  const std::tuple<const char*, const char16_t*, Date> rows[] = {
      {"de_DE", u"1. M\u00E4rz 2023", Date(2023, 3, 1)},
      {"de_DE", u"1. Dez. 2023", Date(2023, 12, 1)},
      {"de_DE", u"1 Mai 2023", Date(2023, 5, 1)},
      {"fr_FR", u"1 f\u00E9vrier 2023", Date(2023, 2, 1)},
      {"fr_FR", u"1 fevrier 2023", Date(2023, 2, 1)},
      {"fr_FR", u"14 juil. 2023", Date(2023, 7, 14)},
      {"es_ES", u"1 de noviembre de 2023", NOVEMBER},
      {"es_ES", u"1 nov 2023", NOVEMBER},
      {"ja_JP", u"2023\u5E7411\u67081\u65E5", NOVEMBER},
      {"ru_RU", u"1 \u043D\u043E\u044F\u0431\u0440\u044F 2023", NOVEMBER},
      {"tr_TR", u"1 KASIM 2023", NOVEMBER},
  };
  for (const auto& [locale, text, date] : rows)
    EXPECT_EQ(date, typedIn(locale, text)) << locale << " " << String(text).toUTF8();
}

TEST_F(TypedDateTest, ANameThatCouldBeTwoMonthsIsRefused) {
  EXPECT_EQ(std::nullopt, typedIn("fr_FR", u"1 jui 2023"));
  EXPECT_EQ(std::nullopt, typedIn("en_AU", u"1 ma 2023"));
  EXPECT_EQ(std::nullopt, typedIn("en_AU", u"1 J 2023"));
  // "mar" is March in English and November in Finnish.
  EXPECT_EQ(std::nullopt, typedIn("fi_FI", u"1 mar 2023"));
  EXPECT_EQ(NOVEMBER, typedIn("fi_FI", u"1 marras 2023"));
}

TEST_F(TypedDateTest, BlanksAndMarksAroundThePartsAreIgnored) {
  for (const char16_t* text : {u"  1/11/2023 ", u"1 / 11 / 2023", u"1/11/2023.", u"\u200E1/11/2023",
                               u"1\u00A0Nov\u202F2023", u"1\u201311\u20132023", u"\t1/11/2023\n"})
    EXPECT_EQ(NOVEMBER, typedIn("en_AU", text)) << String(text).toUTF8();
}

TEST_F(TypedDateTest, ShortYears) {
  EXPECT_EQ(Date(2069, 11, 1), typedIn("en_AU", u"1/11/69"));
  EXPECT_EQ(Date(1970, 11, 1), typedIn("en_AU", u"1/11/70"));
  EXPECT_EQ(Date(2000, 11, 1), typedIn("en_AU", u"1/11/00"));
  EXPECT_EQ(Date(1999, 11, 1), typedIn("en_AU", u"1 Nov 99"));
  EXPECT_EQ(Date(2023, 11, 1), typedIn("ja_JP", u"23/11/1"));
}

TEST_F(TypedDateTest, TheLastOfFebruary) {
  for (const char* locale : {"en_AU", "en_US", "de_DE", "fr_FR", "ja_JP"}) {
    EXPECT_EQ(Date(2024, 2, 29), typedIn(locale, u"29 Feb 2024")) << locale;
    EXPECT_EQ(Date(2024, 2, 29), typedIn(locale, u"2024-02-29")) << locale;
    EXPECT_EQ(std::nullopt, typedIn(locale, u"29 Feb 2023")) << locale;
    EXPECT_EQ(std::nullopt, typedIn(locale, u"2023-02-29")) << locale;
  }
  EXPECT_EQ(Date(2024, 2, 29), typedIn("en_AU", u"29/2/24"));
  EXPECT_EQ(std::nullopt, typedIn("en_AU", u"29/2/23"));
  EXPECT_EQ(std::nullopt, typedIn("en_AU", u"29/2/1900"));
  EXPECT_EQ(Date(2000, 2, 29), typedIn("en_AU", u"29/2/2000"));
}

TEST_F(TypedDateTest, InvalidDaysAreRefused) {
  for (const char16_t* text : {u"",
                               u" ",
                               u"x",
                               u"today",
                               u"1",
                               u"1/11",
                               u"1 Nov",
                               u"Nov 2023",
                               u"31/11/2023",
                               u"32/1/2023",
                               u"0/1/2023",
                               u"1/0/2023",
                               u"1/13/2023",
                               u"11/2023/1",
                               u"1/11/203",
                               u"1/11/2",
                               u"1/11/20233",
                               u"1/11/0203",
                               u"1//11/2023",
                               u"-1/11/2023",
                               u"/1/11/2023",
                               u"1/11/2023/",
                               u"1/11/2023 12:00",
                               u"1/11/2023 x",
                               u"1/11/2023/4",
                               u"001/11/2023",
                               u"1/011/2023",
                               u"1 Foo 2023",
                               u"1 Nov Dec 2023",
                               u"01112023",
                               u"20231101",
                               u"1;11;2023",
                               u"1+11+2023",
                               u"1/11/%d",

                               u"1,,11,2023"})
    EXPECT_EQ(std::nullopt, typedIn("en_AU", text)) << String(text).toUTF8();
  // The other order is not tried, because it would be another day.
  EXPECT_EQ(std::nullopt, typedIn("en_US", u"13/11/2023"));
  EXPECT_EQ(std::nullopt, typedIn("en_AU", u"11/13/2023"));
  EXPECT_EQ(std::nullopt, typedIn("en_AU", String(String::Base(5000, u'1')).c_str()));
}

TEST_F(TypedDateTest, TheUsersPictureDeterminesTheOrder) {
  LinuxPlatformOptions options;
  options.locale = "en_AU";
  options.datePicture = "MM/dd/yy";
  LinuxPlatform platform(options);
  Date date;
  ASSERT_TRUE(platform.readTypedDate(u"11/1/2023", date));
  EXPECT_EQ(NOVEMBER, date);
}

TEST_F(TypedDateTest, EveryShortFormIsRead) {
  for (const char* locale : {"en_AU", "en_US", "en_CA", "de_DE", "fr_FR", "bg_BG", "ko_KR", "hr_HR", "hu_HU",
                             "lv_LV", "fa_IR", "th_TH", "zh_CN", "nl_NL"}) {
    LinuxPlatformOptions options;
    options.locale = locale;
    LinuxPlatform platform(options);
    for (const Date& day : {Date(2023, 11, 1), Date(2024, 2, 29), Date(1999, 12, 31)}) {
      Date date(2001, 2, 3);
      const String text = u" " + platform.shortDateFormat(day) + u" ";
      EXPECT_TRUE(platform.readTypedDate(text, date)) << locale << text.toUTF8();
      EXPECT_EQ(day, date) << locale << text.toUTF8();
    }
  }
}

} // namespace
} // namespace Tallymoor
