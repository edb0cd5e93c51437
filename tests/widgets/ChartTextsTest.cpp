#include "widgets/ChartTexts.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

class ChartTextsTest : public ::testing::Test {
protected:
  TestProfile m_profile{"en_AU"};
};

TEST_F(ChartTextsTest, ValuesAreToldInFull) {
  EXPECT_EQ(u"$1,234.56", chartValueText(1234.56, ChartUnit::MONEY));
  EXPECT_EQ(u"1.2345", chartValueText(1.2345, ChartUnit::PRICE));
  EXPECT_EQ(u"1.20", chartValueText(1.2, ChartUnit::PRICE));
  EXPECT_EQ(u"-12.50%", chartValueText(-12.5, ChartUnit::PERCENT));
}

TEST_F(ChartTextsTest, MoneyBesideTheAxisHasCentsOnlyWhereTheyDiffer) {
  EXPECT_EQ(u"$60,000", chartAxisText(60000.0, 20000.0, ChartUnit::MONEY));
  EXPECT_EQ(u"-$5", chartAxisText(-5.0, 5.0, ChartUnit::MONEY));
  EXPECT_EQ(u"$2.50", chartAxisText(2.5, 2.5, ChartUnit::MONEY));
  EXPECT_EQ(u"0.0025", chartAxisText(0.0025, 0.0025, ChartUnit::MONEY));
}

TEST_F(ChartTextsTest, CentsAreTakenOffInEveryLocale) {
  m_profile.setLocale("de_DE");
  const String text = chartAxisText(60000.0, 20000.0, ChartUnit::MONEY);
  EXPECT_TRUE(text.startsWith(u"60.000")) << text.toUTF8();
  EXPECT_FALSE(text.contains(u",")) << text.toUTF8();
  EXPECT_TRUE(text.contains(u"€")) << text.toUTF8();
  m_profile.setLocale("ja_JP");
  EXPECT_TRUE(chartAxisText(60000.0, 20000.0, ChartUnit::MONEY).contains(u"60,000"));
}

TEST_F(ChartTextsTest, PricesAndPercentagesHaveAsManyDecimalsAsTheTicksNeed) {
  EXPECT_EQ(u"12", chartAxisText(12.0, 1.0, ChartUnit::PRICE));
  EXPECT_EQ(u"12.50", chartAxisText(12.5, 0.5, ChartUnit::PRICE));
  EXPECT_EQ(u"0.125", chartAxisText(0.125, 0.025, ChartUnit::PRICE));
  EXPECT_EQ(u"12.5%", chartAxisText(12.5, 2.5, ChartUnit::PERCENT));
  EXPECT_EQ(u"10%", chartAxisText(10.0, 5.0, ChartUnit::PERCENT));
}

TEST_F(ChartTextsTest, ShortTextsStandForLargeValues) {
  EXPECT_EQ(u"60K", chartShortAxisText(60000.0, 20000.0, ChartUnit::MONEY));
  EXPECT_EQ(u"-2.5M", chartShortAxisText(-2.5e6, 0.5e6, ChartUnit::MONEY));
  EXPECT_EQ(u"3B", chartShortAxisText(3e9, 1e9, ChartUnit::PRICE));
  EXPECT_EQ(u"4T", chartShortAxisText(4e12, 1e12, ChartUnit::PRICE));
  EXPECT_EQ(u"2e+20", chartShortAxisText(2e20, 1e20, ChartUnit::MONEY));
  EXPECT_EQ(u"60K%", chartShortAxisText(60000.0, 20000.0, ChartUnit::PERCENT));
  EXPECT_EQ(u"0.5", chartShortAxisText(0.5, 0.5, ChartUnit::MONEY));
}

} // namespace
} // namespace Tallymoor
