#include "foundation/MoneyFormat.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace Tallymoor {
namespace {

struct FormatRow {
  const char* locale;
  double amount;
  const char16_t* text;
};

TEST(MoneyFormatTest, WritesTheFormOfTheLocale) {
  const FormatRow rows[] = {
      {"en_AU", 1234.5, u"$1,234.50"},
      {"en_AU", -1234.5, u"-$1,234.50"},
      {"en_AU", 0.0, u"$0.00"},
      {"en_AU", 0.125, u"$0.13"},
      {"en_AU", -0.125, u"-$0.13"},
      {"en_AU", 1e15, u"$1,000,000,000,000,000.00"},
      {"en_US", 1234.5, u"$1,234.50"},
      {"en_GB", 1234.5, u"\u00A31,234.50"},
      {"de_DE", 1234.5, u"1.234,50\u00A0\u20AC"},
      {"de_DE", -0.5, u"-0,50\u00A0\u20AC"},
      {"ja_JP", 1234.5, u"\uFFE51,235"},
      {"ja_JP", -1234.4, u"-\uFFE51,234"},
      {"en", 2.0, u"$2.00"},
  };
  for (const FormatRow& row : rows) {
    EXPECT_EQ(MoneyFormat(row.locale).format(row.amount), row.text) << row.locale << " " << row.amount;
  }
}

TEST(MoneyFormatTest, TellsTheCurrencyOfALocaleThatWasChosen) {
  EXPECT_EQ(MoneyFormat("en_AU").currencyCode(), String(u"AUD"));
  EXPECT_EQ(MoneyFormat("de_DE").currencyCode(), String(u"EUR"));
  EXPECT_EQ(MoneyFormat("en_US", false).currencyCode(), String());
}

TEST(MoneyFormatTest, DigitsAreLatinAndDirectionMarksAreLeftOut) {
  for (const char* locale : {"ar_EG", "fa_IR", "he_IL", "my_MM", "mr_IN"}) {
    const String text = MoneyFormat(locale).format(-7.0);
    EXPECT_TRUE(text.contains(u"7")) << locale << " " << text.toUTF8();
    EXPECT_EQ(text.find_first_of(u"\u200E\u200F\u061C"), String::npos) << locale;
  }
}

TEST(MoneyFormatTest, NoMinusSignOnAnAmountThatShowsAsZero) {
  EXPECT_EQ(MoneyFormat("en_AU").format(-0.004), u"$0.00");
  EXPECT_EQ(MoneyFormat("en_AU").format(-0.0), u"$0.00");
  EXPECT_EQ(MoneyFormat("en_AU").format(-0.006), u"-$0.01");
  EXPECT_EQ(MoneyFormat("ja_JP").format(-0.4), u"\uFFE50");
}

struct ReadRow {
  const char* locale;
  const char16_t* text;
  double amount;
};

TEST(MoneyFormatTest, ReadsTypedAmounts) {
  const ReadRow rows[] = {
      {"en_AU", u"1234.5", 1234.5},
      {"en_AU", u"$1,234.50", 1234.5},
      {"en_AU", u"1,5", 15.0},
      {"en_AU", u"A$-3", -3.0},
      {"en_AU", u"", 0.0},
      {"en_AU", u"none", 0.0},
      {"de_DE", u"1234,5", 1234.5},
      {"de_DE", u"1234.5", 1234.5},
      {"de_DE", u"1,5 \u20AC", 1.5},
      {"de_DE", u"-0,05", -0.05},
      {"de_DE", u"1,234,5", 12345.0},
      {"de_DE", u"1,234.5", 1234.5},
      {"de_DE", u"1.234,50", 1234.5},
      {"de_DE", u"-1.234.567,8", -1234567.8},
      {"de_DE", u"1.234", 1.234},
      {"en_AU", u"1.234,50", 1.2345},
      {"ja_JP", u"1,235", 1235.0},
  };
  for (const ReadRow& row : rows)
    EXPECT_EQ(MoneyFormat(row.locale).read(row.text), row.amount)
        << row.locale << " " << String(row.text).toUTF8();
}

TEST(MoneyFormatTest, ReadsItsOwnFormInEveryLocale) {
  for (const char* locale : {"en_AU", "en_US", "en_GB", "de_DE", "fr_FR", "de_CH", "sv_SE", "da_DK", "nb_NO",
                             "pt_BR", "hi_IN", "ar_EG", "he_IL", "pl_PL", "ru_RU", "fy_NL"}) {
    const MoneyFormat money(locale);
    for (const double amount : {0.0, 0.05, -0.05, 999.0, 1234.5, -1234567.0, 98765432.0})
      EXPECT_EQ(money.read(money.format(amount)), amount) << locale << " " << money.format(amount).toUTF8();
  }
  for (const char* locale : {"es_CL", "fa_IR", "ja_JP", "ko_KR", "ckb_IQ"}) {
    const MoneyFormat money(locale);
    EXPECT_EQ(money.read(money.format(1235.0)), 1235.0) << locale;
    EXPECT_EQ(money.read(money.format(-9876543.0)), -9876543.0) << locale;
  }
}

TEST(MoneyFormatTest, ReadsATrailingMinusSignIfTheLocaleUsesIt) {
  const MoneyFormat money("fy_NL");
  EXPECT_EQ(money.format(-1234.5), u"\u20AC\u00A01.234,50-");
  EXPECT_EQ(money.read(u"\u20AC\u00A01.234,50-"), -1234.5);
  EXPECT_EQ(MoneyFormat("en_AU").read(u"1-2"), 1.0); // Not in other locales.
}

TEST(MoneyFormatTest, IsThreadSafe) {
  const MoneyFormat money("de_DE");
  std::vector<std::thread> threads;
  std::vector<int> wrong(4, 0);
  for (int& count : wrong)
    threads.emplace_back([&] {
      for (int i = 0; i < 300; ++i)
        count += money.format(1234.5) == u"1.234,50\u00A0\u20AC" && money.read(u"1,5") == 1.5 ? 0 : 1;
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4, 0));
}

} // namespace
} // namespace Tallymoor
