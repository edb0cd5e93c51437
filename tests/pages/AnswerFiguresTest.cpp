#include "pages/AnswerFigures.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

AnswerFormat dated(const char16_t* pattern, const char16_t* zone = u"") {
  AnswerFormat format;
  format.datePattern = pattern;
  format.timeZone = zone;
  return format;
}

String dayOf(const AnswerFormat& format, const char16_t* text) {
  return AnswerFigures(format).day(text).toString(DATE_DISPLAY_DMY);
}

TEST(AnswerFigures, ReadsDaysByThePattern) {
  EXPECT_EQ(dayOf(dated(u"yyyy-MM-dd"), u" 2022-01-12 "), u"12/1/2022");
  EXPECT_EQ(dayOf(dated(u"MM/dd/yyyy"), u"08/24/2022"), u"24/8/2022");
  EXPECT_EQ(dayOf(dated(u"dd.MM.yyyy"), u"03.12.2020"), u"3/12/2020");
  EXPECT_EQ(dayOf(dated(u"yyyy. MM. dd."), u"2022. 02. 28."), u"28/2/2022");
  EXPECT_EQ(dayOf(dated(u"yyyyMMdd"), u"20260412"), u"12/4/2026");
  EXPECT_EQ(dayOf(dated(u"d MMM yyyy"), u"1 Nov 2023"), u"1/11/2023");
  AnswerFormat german = dated(u"d. MMMM yyyy");
  german.dateLocale = u"de";
  EXPECT_EQ(dayOf(german, u"3. März 2021"), u"3/3/2021");
}

TEST(AnswerFigures, TakesTheDayOfAMomentInItsTimeZone) {
  EXPECT_EQ(dayOf(dated(u"epoch-seconds", u"Australia/Sydney"), u"1641942000"), u"12/1/2022");
  EXPECT_EQ(dayOf(dated(u"epoch-seconds"), u"1641942000"), u"11/1/2022");
  EXPECT_EQ(dayOf(dated(u"epoch-milliseconds", u"Australia/Sydney"), u"1641942000000"), u"12/1/2022");
  EXPECT_EQ(dayOf(dated(u"epoch-days", u"Pacific/Honolulu"), u"19004"), u"12/1/2022");
  EXPECT_EQ(dayOf(dated(u"yyyy-MM-dd'T'HH:mm:ssXXX", u"Australia/Sydney"), u"2022-01-11T23:00:00Z"),
            u"12/1/2022");
  // Midnight in Sydney, an hour of UTC earlier in summer.
  EXPECT_EQ(dayOf(dated(u"epoch-seconds", u"Australia/Sydney"), u"1648904400"), u"3/4/2022");
  EXPECT_EQ(dayOf(dated(u"epoch-seconds", u"Australia/Sydney"), u"1649340000"), u"8/4/2022");
}

TEST(AnswerFigures, RefusesWhatIsNoDay) {
  for (const char16_t* const text :
       {u"", u"2022-02-30", u"2022-13-01", u"22-01-01", u"2022-01-12x", u"12/1/2022"})
    EXPECT_EQ(messageOf([&] { dayOf(dated(u"yyyy-MM-dd"), text); }), u"no day: \"" + String(text) + u"\"");
  EXPECT_EQ(messageOf([&] { dayOf(dated(u"epoch-seconds"), u"soon"); }), u"no day: \"soon\"");
  EXPECT_EQ(messageOf([&] { dayOf(dated(u"epoch-seconds"), u"1e300"); }), u"no day: \"1e300\"");
  EXPECT_EQ(messageOf([&] { AnswerFigures figures(dated(u"")); }), u"unknown date pattern: \"\"");
  EXPECT_EQ(messageOf([&] { AnswerFigures figures(dated(u"yyyy-MM-dd", u"Sydney")); }),
            u"unknown time zone: \"Sydney\"");
}

TEST(AnswerFigures, ReadsNumbersWithTheSignsOfTheFormat) {
  const AnswerFormat point;
  AnswerFormat comma;
  comma.decimalSign = u',';
  struct Case {
    const AnswerFormat& format;
    const char16_t* text;
    double number;
  };
  for (const Case& each :
       {Case{point, u"12.3400", 12.34}, Case{point, u"1,234.5", 1234.5}, Case{point, u"12,345", 12345.0},
        Case{point, u"1'234.5", 1234.5}, Case{point, u"1.5e-3", 0.0015}, Case{point, u"12.5 AUD", 12.5},
        Case{comma, u"665,89", 665.89}, Case{comma, u"1.234,5", 1234.5}, Case{comma, u"1\u00A0234,5", 1234.5},
        Case{comma, u"1 234 567,5", 1234567.5}, Case{comma, u"12.345", 12345.0},
        Case{comma, u"671,75 \u20AC", 671.75}, Case{comma, u"-3", -3.0}})
    EXPECT_EQ(AnswerFigures(each.format).number(each.text), each.number) << String(each.text).toUTF8();
}

TEST(AnswerFigures, RefusesWhatIsNoNumber) {
  const AnswerFormat point;
  AnswerFormat comma;
  comma.decimalSign = u',';
  for (const char16_t* const text :
       {u"12,34", u"1.234,50", u"1,23.4", u"12.34.56", u"0x10", u"1e999", u"1,2345"})
    EXPECT_EQ(messageOf([&] { AnswerFigures(point).number(text); }), u"no number: \"" + String(text) + u"\"");
  for (const char16_t* const text : {u"12.34", u"1,234.50", u"1.23,4", u"1,5,6", u"1.234 567,5"})
    EXPECT_EQ(messageOf([&] { AnswerFigures(comma).number(text); }), u"no number: \"" + String(text) + u"\"");
  EXPECT_EQ(AnswerFigures(point).number(u"N/A"), std::nullopt);
}

TEST(AnswerFigures, ReadsNumbersWithTheSignOfACurrency) {
  AnswerFormat dollars;
  dollars.currency = u"USD";
  AnswerFormat euros;
  euros.decimalSign = u',';
  euros.currency = u"EUR";
  for (const char16_t* const text : {u"$10.50", u"$ 10.50", u"10.50 $", u"10.50"})
    EXPECT_EQ(AnswerFigures(dollars).number(text), 10.5) << String(text).toUTF8();
  for (const char16_t* const text : {u"\u20AC10,50", u"10,50 \u20AC", u"&euro; 10,50", u"10,50&nbsp;&euro;"})
    EXPECT_EQ(AnswerFigures(euros).number(text), 10.5) << String(text).toUTF8();
  EXPECT_EQ(messageOf([&] { AnswerFigures(dollars).number(u"\u00A310.50"); }),
            u"not in USD: \"\u00A310.50\"");
  EXPECT_EQ(messageOf([&] { AnswerFigures(dollars).number(u"$$10.50"); }), u"no number: \"$$10.50\"");
  EXPECT_EQ(messageOf([&] { AnswerFigures(dollars).number(u"$12,34"); }), u"no number: \"$12,34\"");
  EXPECT_EQ(messageOf([&] { AnswerFigures(dollars).price(u"$-1"); }), u"a price below zero: \"$-1\"");
}

TEST(AnswerFigures, MakesPricesOfNumbers) {
  AnswerFormat format;
  format.factor = 0.01;
  EXPECT_DOUBLE_EQ(AnswerFigures(format).price(u"1234").value(), 12.34);
  EXPECT_EQ(AnswerFigures(format).price(u"0.00"), std::nullopt);
  EXPECT_EQ(AnswerFigures(format).price(u"-"), std::nullopt);
  EXPECT_EQ(messageOf([&] { AnswerFigures(format).price(u"-1"); }), u"a price below zero: \"-1\"");
  AnswerFormat rate;
  rate.invert = true;
  EXPECT_DOUBLE_EQ(AnswerFigures(rate).price(u"0.8").value(), 1.25);
}

TEST(AnswerFigures, RefusesADayOfMillionsOfDigitsAtOnce) {
  AnswerFormat format;
  const AnswerFigures figures(format);
  EXPECT_EQ(messageOf([&] { figures.day(String(10'000'000, u'9')); }).substr(0, 15), u"no day: \"999999");
  EXPECT_EQ(messageOf([&] { figures.day(String(u"2026-02-26") + String(91, u' ')); }), u"(nothing thrown)");
}

} // namespace
} // namespace Tallymoor
