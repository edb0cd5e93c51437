#include "foundation/String.h"
#include "foundation/Exception.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include <clocale>
#include <gtest/gtest.h>
#include <limits>
#include <locale>

namespace Tallymoor {
namespace {

TEST(StringTest, NullPointersGiveEmptyTexts) {
  EXPECT_EQ(String(static_cast<const char*>(nullptr)), u"");
  EXPECT_EQ(String(static_cast<const char16_t*>(nullptr)), u"");
  EXPECT_EQ(String(u"a") + static_cast<const char16_t*>(nullptr), u"a");
}

TEST(StringTest, CopiesUpToTheTerminatingZero) {
  const char16_t text[] = {u'a', u'b', 0, u'c', 0};
  EXPECT_EQ(String(text), u"ab");
}

TEST(StringTest, OrderIsNumericByUnitAndShorterFirst) {
  EXPECT_LT(String(u"ABC"), String(u"ABCD"));
  EXPECT_LT(String(u"Z"), String(u"a"));
  EXPECT_LT(String(u"\xD83D\xDE00"), String(u"\xFFFD")); // A surrogate pair is compared by its code units.
}

TEST(StringTest, JoiningLeavesItsSourceAlone) {
  const String left = u"ab";
  EXPECT_EQ(left + String(u"c"), u"abc");
  EXPECT_EQ(left + u"cd", u"abcd");
  EXPECT_EQ(left + u'e', u"abe");
  EXPECT_EQ(u"x" + left, u"xab");
  EXPECT_EQ(left.substr(1) + left, u"bab");
  EXPECT_EQ(left, u"ab");
}

struct DecodeRow {
  const char* bytes;
  const char16_t* text;
};

TEST(StringTest, DecodesUTF8) {
  const DecodeRow rows[] = {
      {"", u""},
      {"plain", u"plain"},
      {"caf\xC3\xA9", u"caf\u00E9"},
      {"\xE2\x82\xAC", u"\u20AC"},
      {"\xF0\x9F\x98\x80", u"\xD83D\xDE00"},
      {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z", u"\u00E9\u20AC\xD83D\xDE00z"},
  };
  for (const DecodeRow& row : rows)
    EXPECT_EQ(String(row.bytes), row.text) << row.bytes;
}

TEST(StringTest, InvalidUTF8IsReadAsLatin1) {
  const DecodeRow rows[] = {
      {"a\xE9z", u"a\u00E9z"},                                     // A Latin-1 letter in the middle.
      {"caf\xE9", u"caf\u00E9"},                                   // At the end, where ICU would just stop.
      {"\xC3\xA9 \xE9!", u"\u00C3\u00A9 \u00E9!"},                 // A valid sequence is read as Latin-1 too.
      {"\xC3\xA9\xE2\x82", u"\u00C3\u00A9\u00E2\u0082"},           // An incomplete sequence at the end.
      {"\xC0\xAF", u"\u00C0\u00AF"},                               // Overlong.
      {"\xE0\x80\xAF", u"\u00E0\u0080\u00AF"},                     // Overlong.
      {"\xED\xA0\x80", u"\u00ED\u00A0\u0080"},                     // A surrogate.
      {"\xF4\x90\x80\x80", u"\u00F4\u0090\u0080\u0080"},           // Beyond the last code point.
      {"\xF6\x97\x8B\x8B", u"\u00F6\u0097\u008B\u008B"},           // Far beyond it.
      {"\xF8\x88\x80\x80\x80", u"\u00F8\u0088\u0080\u0080\u0080"}, // Five bytes.
      {"\x80", u"\u0080"},                                         // A lone continuation byte.
      {"\xFF\xFE", u"\u00FF\u00FE"},
  };
  for (const DecodeRow& row : rows)
    EXPECT_EQ(String(row.bytes), row.text) << row.bytes;
}

TEST(StringTest, BytesOfKnownLengthMayHoldNul) {
  EXPECT_EQ(String::fromUTF8(std::string_view("a\0b", 3)).size(), 3u);
  EXPECT_EQ(String::fromUTF8(std::string_view("\xC3\xA9\0b", 4)), String(u"\u00E9\0b", 3));
}

TEST(StringTest, EncodesUTF8) {
  EXPECT_EQ(String(u"").toUTF8(), "");
  EXPECT_EQ(String(u"plain").toUTF8(), "plain");
  EXPECT_EQ(String(u"\u00E9\u20AC").toUTF8(), "\xC3\xA9\xE2\x82\xAC");
  EXPECT_EQ(String(u"\xD83D\xDE00").toUTF8(), "\xF0\x9F\x98\x80");
  EXPECT_EQ(String(u"a\0\u00E9", 3).toUTF8(), std::string("a\0\xC3\xA9", 4));
}

TEST(StringTest, LoneSurrogatesBecomeTheReplacementCharacter) {
  EXPECT_EQ(String(u"a\xD83D").toUTF8(), "a\xEF\xBF\xBD");
  EXPECT_EQ(String(u"\xD83Dz").toUTF8(), "\xEF\xBF\xBDz");
  EXPECT_EQ(String(u"\xDE00\xD83D").toUTF8(), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(String(u"\xD83D\xD83D\xDE00").toUTF8(), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

TEST(StringTest, LongTextsComeBackWhole) {
  String text;
  for (int i = 0; i < 5000; ++i)
    text += u"price \u20AC \xD83D\xDE00 ";
  EXPECT_EQ(String(text.toUTF8().c_str()), text);
}

TEST(StringTest, Latin1ReplacesWhatDoesNotFit) {
  EXPECT_EQ(String(u"\u20AC").toLatin1(), "?");
  EXPECT_EQ(String(u"\u00E9").toLatin1(), "\xE9");
  EXPECT_EQ(String(u"a\u0100\u00FF").toLatin1(), "a?\xFF");
  EXPECT_EQ(String(u"\xD83D\xDE00").toLatin1(), "??");
}

TEST(StringTest, ReadsWholeNumbers) {
  const std::pair<const char16_t*, std::int32_t> rows[] = {
      {u"", 0},
      {u"0", 0},
      {u"42", 42},
      {u"-42", -42},
      {u"+7", 7},
      {u"1,234", 1234},
      {u"1,234,567", 1234567},
      {u"abc", 0},
      {u"12abc", 12},
      {u"  15", 15},
      {u"\t\n 15 ", 15},
      {u"\u00A015", 15},
      {u"12.9", 12},
      {u"- 5", 0},
      {u"+-5", 0},
      {u"--5", 0},
      {u"2147483647", 2147483647},
      {u"2147483648", 2147483647},
      {u"-2147483648", std::numeric_limits<std::int32_t>::min()},
      {u"-2147483649", std::numeric_limits<std::int32_t>::min()},
      {u"99999999999999999999", 2147483647},
      {u"-99999999999999999999", std::numeric_limits<std::int32_t>::min()},
      {u"0x10", 0},
      {u"007", 7},
      {u"\u0661\u0662", 0},
      {u",,5", 5},
  };
  for (const auto& [text, number] : rows)
    EXPECT_EQ(String(text).toLong(), number) << String(text).toUTF8();
}

TEST(StringTest, ReadsWholeNumbersOfSixtyFourBits) {
  EXPECT_EQ(String(u"3000000000").toLong64(), 3000000000);
  EXPECT_EQ(String(u"9,223,372,036,854,775,807").toLong64(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(String(u"9223372036854775808").toLong64(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(String(u"-9223372036854775809").toLong64(), std::numeric_limits<std::int64_t>::min());
}

TEST(StringTest, WritesWholeNumbers) {
  EXPECT_EQ(String::fromLong(0), u"0");
  EXPECT_EQ(String::fromLong(-1234567), u"-1234567");
  EXPECT_EQ(String::fromLong(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
}

TEST(StringTest, ReadsRealNumbers) {
  const std::pair<const char16_t*, double> rows[] = {
      {u"", 0.0},
      {u"abc", 0.0},
      {u"1,234.50", 1234.5},
      {u"12.5", 12.5},
      {u"-12.5", -12.5},
      {u"+12.5", 12.5},
      {u".5", 0.5},
      {u"-.5", -0.5},
      {u"5.", 5.0},
      {u".", 0.0},
      {u"  3.25 ", 3.25},
      {u"3.25xyz", 3.25},
      {u"1e3", 1000.0},
      {u"1E-2", 0.01},
      {u"1e", 1.0},
      {u"inf", 0.0},
      {u"nan", 0.0},
      {u"-inf", 0.0},
      {u"INFINITY", 0.0},
      {u"0x1p4", 0.0},
      {u"1.2.3", 1.2},
      {u"1e999", 0.0},
      {u"1e-999", 0.0},
      {u"--5", 0.0},
      {u"+-5", 0.0},
      {u"1,2,3", 123.0},
      {u"2\u20AC", 2.0},
      {u"\u20AC2", 0.0},
      {u"\u00A07.5", 7.5},
      {u"- 5", 0.0},
      {u"0.1", 0.1},
      {u"123456789.123456789", 123456789.123456789},
  };
  for (const auto& [text, number] : rows)
    EXPECT_EQ(String(text).toDouble(), number) << String(text).toUTF8();
}

struct FromDoubleRow {
  double value;
  int decimals;
  const char16_t* text;
};

TEST(StringTest, WritesRealNumbers) {
  const FromDoubleRow rows[] = {
      {0.0, 2, u"0.00"},
      {0.0, 0, u"0"},
      {-0.0, 2, u"0.00"},
      {1234.5, 2, u"1234.50"},
      {0.25, 2, u"0.25"},
      {-0.25, 2, u"-0.25"},
      {0.004, 2, u"0.00"},
      {-0.004, 2, u"-0.00"},
      {0.005, 2, u"0.01"},
      {0.006, 2, u"0.01"},
      {1.05, 1, u"1.1"},
      {1.05, 2, u"1.05"},
      {1.005, 2, u"1.00"},
      {2.675, 2, u"2.67"},
      {1.15, 1, u"1.1"},
      {1.25, 1, u"1.3"},
      {-1.25, 1, u"-1.3"},
      {0.5, 0, u"1"},
      {-0.5, 0, u"-1"},
      {1.5, 0, u"2"},
      {2.5, 0, u"3"},
      {-2.5, 0, u"-3"},
      {0.125, 2, u"0.13"},
      {-0.125, 2, u"-0.13"},
      {0.375, 2, u"0.38"},
      {9.5, 0, u"10"},
      {99.5, 0, u"100"},
      {-99.5, 0, u"-100"},
      {9.995, 2, u"9.99"},
      {9.996, 2, u"10.00"},
      {0.96875, 4, u"0.9688"},
      {0.99999, 4, u"1.0000"},
      {0.03125, 4, u"0.0313"},
      {-0.03125, 4, u"-0.0313"},
      {0.25, 1, u"0.3"},
      {0.75, 1, u"0.8"},
      {9.75, 1, u"9.8"},
      {9.25, 0, u"9"},
      {0.1, 6, u"0.100000"},
      {0.05, 0, u"0"},
      {-0.05, 1, u"-0.1"},
      {0.00000049, 6, u"0.000000"},
      {1e15, 2, u"1000000000000000.00"},
      {-1e15, 0, u"-1000000000000000"},
      {1e22, 0, u"10000000000000000000000"},
      {4503599627370495.5, 0, u"4503599627370496"},
      {562949953421312.125, 2, u"562949953421312.13"},
      {1125899906842623.75, 1, u"1125899906842623.8"},
      {2251799813685247.75, 1, u"2251799813685247.8"},
      {2251799813685247.25, 1, u"2251799813685247.3"},
      {1e-300, 4, u"0.0000"},
      {300000.0, 4, u"300000.0000"},
      {12.34, 4, u"12.3400"},
      {0.1, 20, u"0.10000000000000000555"},
      {5.0, -3, u"5"},
  };
  for (const FromDoubleRow& row : rows)
    EXPECT_EQ(String::fromDouble(row.value, row.decimals), row.text) << row.value << " at " << row.decimals;
}

TEST(StringTest, ValuesThatAreNotFiniteAreWrittenAsZero) {
  using Limits = std::numeric_limits<double>;
  EXPECT_EQ(String::fromDouble(Limits::infinity(), 2), u"0.00");
  EXPECT_EQ(String::fromDouble(-Limits::infinity(), 2), u"0.00");
  EXPECT_EQ(String::fromDouble(Limits::quiet_NaN(), 4), u"0.0000");
}

TEST(StringTest, TheLargestValueFits) {
  const String text = String::fromDouble(-std::numeric_limits<double>::max(), 100);
  EXPECT_EQ(text.size(), 1u + 309u + 1u + 100u);
  EXPECT_EQ(text.toDouble(), -std::numeric_limits<double>::max());
  EXPECT_EQ(String::fromDouble(std::numeric_limits<double>::denorm_min(), 2), u"0.00");
}

TEST(StringTest, EveryTieRoundsAwayFromZero) {
  for (int i = 0; i < 2000; ++i) {
    const double tie = i + 0.5;
    EXPECT_EQ(String::fromDouble(tie, 0), String::fromLong(i + 1));
    EXPECT_EQ(String::fromDouble(-tie, 0), u"-" + String::fromLong(i + 1));
  }
}

/// A locale with a decimal comma and points that group every two digits.
class StrangeNumbers : public std::numpunct<char> {
protected:
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\2"; }
};

void expectPlainNumbers() {
  EXPECT_EQ(String::fromDouble(1234.5, 2), u"1234.50");
  EXPECT_EQ(String::fromLong(1234567), u"1234567");
  EXPECT_EQ(String(u"1234.5").toDouble(), 1234.5);
  EXPECT_EQ(String(u"1,234.5").toDouble(), 1234.5);
  EXPECT_EQ(String(u"1.5").toLong(), 1);
}

TEST(StringTest, NumbersDoNotFollowTheLocaleOfStreams) {
  const std::locale before =
      std::locale::global(std::locale(std::locale::classic(), new StrangeNumbers)); // Owned by the locale.
  expectPlainNumbers();
  std::locale::global(before);
}

TEST(StringTest, NumbersDoNotFollowTheProcessLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  // Those installed on this system.
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "C.UTF-8"})
    if (std::setlocale(LC_ALL, name))
      expectPlainNumbers();
  std::setlocale(LC_ALL, before.c_str());
}

TEST(StringTest, Percents) {
  EXPECT_EQ(String::toPercent(12.5), u"12.50%");
  EXPECT_EQ(String::toPercent(-0.125), u"-0.13%");
  EXPECT_EQ(String::appendPercent(u"7"), u"7%");
  EXPECT_EQ(String(u"12.5%").fromPercent(), 12.5);
  EXPECT_EQ(String(u"12.5").fromPercent(), 12.5);
  EXPECT_EQ(String(u"").fromPercent(), 0.0);
  EXPECT_EQ(String(u"%").fromPercent(), 0.0);
}

TEST(StringTest, FilteredAmounts) {
  EXPECT_EQ(String(u"$1,234.50").toDoubleFiltered(), 1234.5);
  EXPECT_EQ(String(u"A$-3").toDoubleFiltered(), -3.0);
  EXPECT_EQ(String(u"1-2").toDoubleFiltered(), 1.0);
  EXPECT_EQ(String(u"\u20AC 1 234.5").toDoubleFiltered(), 1234.5);
  EXPECT_EQ(String(u"1e5").toDoubleFiltered(), 15.0); // The letter is dropped like any other.
  EXPECT_EQ(String(u"none").toDoubleFiltered(), 0.0);
}

TEST(StringTest, RemovesCommasInPlace) {
  String text = u",1,,2,3,";
  String::removeCommas(text);
  EXPECT_EQ(text, u"123");
}

TEST(StringTest, CaseMappingIsIndependentOfTheLocale) {
  EXPECT_EQ(String(u"DIV").toLower(), u"div");
  EXPECT_EQ(String(u"div.ax").toUpper(), u"DIV.AX");
  EXPECT_EQ(String(u"\u00C4\u0416\u0391").toLower(), u"\u00E4\u0436\u03B1");
  EXPECT_EQ(String(u"stra\u00DFe").toUpper(), u"STRA\u00DFE"); // Each unit maps to one unit.
  EXPECT_EQ(String(u"\xD83D\xDE00").toUpper(), u"\xD83D\xDE00");
}

TEST(StringTest, Trimming) {
  EXPECT_EQ(String(u" \t\u00A0a b\u2003\n").trimmed(), u"a b");
  EXPECT_EQ(String(u" \n").trimmed(), u"");
  EXPECT_EQ(String(u"").trimmed(), u"");
}

TEST(StringTest, Searching) {
  EXPECT_TRUE(String(u"abc").contains(u"bc"));
  EXPECT_FALSE(String(u"abc").contains(u"bd"));
  EXPECT_TRUE(String(u"abc").startsWith(u"ab"));
  EXPECT_FALSE(String(u"a").startsWith(u"ab"));
}

} // namespace
} // namespace Tallymoor
