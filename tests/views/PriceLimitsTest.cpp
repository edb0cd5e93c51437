#include "views/PriceLimits.h"
#include "foundation/Exception.h"
#include "foundation/RunTimeSettings.h"
#include "support/TestProfile.h"
#include "xml/PortfolioRecords.h"
#include <gtest/gtest.h>

using namespace Tallymoor;

namespace {

TEST(PriceLimitsTest, ReadsWhatItShows) {
  const TestProfile profile("en_AU");
  const PriceLimits limits{1234.5, 2000.0};
  EXPECT_EQ(String(u"$1,234.50 - $2,000.00"), limits.text());
  EXPECT_TRUE(PriceLimits::MinMaxFromString(limits.text()) == limits);
  EXPECT_TRUE(PriceLimits::MinMaxFromString(u"1.5 - 2") == (PriceLimits{1.5, 2.0}));
}

TEST(PriceLimitsTest, EmptyTextIsNoLimits) {
  const TestProfile profile;
  EXPECT_TRUE(PriceLimits::MinMaxFromString(String()).areNone());
  EXPECT_EQ(String(), PriceLimits{}.text());
  EXPECT_EQ(String(), (PriceLimits{0.00001, -0.00001}.text()));
  EXPECT_EQ(String(u"$0.00 - $2.00"), (PriceLimits{0.0, 2.0}.text()));
}

TEST(PriceLimitsTest, SplitsAtTheFirstSeparator) {
  const TestProfile profile;
  EXPECT_TRUE(PriceLimits::MinMaxFromString(u"1 - 2 - 3").min == 1.0);
}

TEST(PriceLimitsTest, TextWithoutASeparatorIsRefused) {
  const TestProfile profile;
  try {
    PriceLimits::MinMaxFromString(u"1.00-2.00");
    FAIL() << "nothing was thrown";
  } catch (const Exception& exception) {
    EXPECT_EQ(String(u"SharesHeldTable::MinMaxFromString - bad min/max format 1.00-2.00"),
              exception.message());
  }
}

TEST(PriceLimitsTest, DecimalCommaIsReadWhereItIsUsual) {
  const TestProfile profile("de_DE");
  const PriceLimits limits = PriceLimits::MinMaxFromString(u"1,50 € - 2,25 €");
  EXPECT_DOUBLE_EQ(1.5, limits.min);
  EXPECT_DOUBLE_EQ(2.25, limits.max);
}

TEST(PriceLimitsTest, AutomaticLimitsTakeThePlaceOfTheUsersOwn) {
  const TestProfile profile;
  XMLHeldShare share;
  share.subElement(u"MinPrice").setValue(u"1.0000");
  share.subElement(u"MaxPrice").setValue(u"2.0000");
  EXPECT_FALSE(PriceLimits::inForce(share).areNone());
  autoMinMaxPrices = true;
  EXPECT_TRUE(PriceLimits::inForce(share).areNone());
  autoMinMaxPrices = false;
}

} // namespace
