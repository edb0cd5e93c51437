#include "foundation/Amounts.h"
#include <gtest/gtest.h>
#include <limits>

namespace Tallymoor {
namespace {

TEST(AmountsTest, ShowsAsZero) {
  EXPECT_TRUE(showsAsZero(0.0));
  EXPECT_TRUE(showsAsZero(-0.0));
  EXPECT_TRUE(showsAsZero(0.00004));
  EXPECT_TRUE(showsAsZero(-0.00004));
  EXPECT_FALSE(showsAsZero(0.00006));
  EXPECT_FALSE(showsAsZero(-0.00006));
  EXPECT_TRUE(showsAsZero(0.004, 2));
  EXPECT_TRUE(showsAsZero(-0.004, 2));
  EXPECT_FALSE(showsAsZero(0.006, 2));
  EXPECT_FALSE(showsAsZero(0.5, 0)); // An exact tie rounds away from zero.
  EXPECT_FALSE(showsAsZero(1.0));
  EXPECT_FALSE(showsAsZero(-1e300));
  // NaN is written as 0.
  EXPECT_TRUE(showsAsZero(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_TRUE(showsAsZero(std::numeric_limits<double>::infinity()));
}

TEST(AmountsTest, ShowsTheSame) {
  EXPECT_TRUE(showsTheSame(0.1 + 0.2, 0.3, 4));
  EXPECT_FALSE(showsTheSame(0.3001, 0.3, 4));
  EXPECT_TRUE(showsTheSame(0.3001, 0.3, 2));
  EXPECT_TRUE(showsTheSame(-0.001, 0.001, 2));
  EXPECT_FALSE(showsTheSame(-1.0, 1.0, 2));
  EXPECT_TRUE(showsTheSame(0.0, -0.0, 2));
  EXPECT_FALSE(showsTheSame(std::numeric_limits<double>::infinity(), 1.0, 2));
}

TEST(AmountsTest, TenThousandths) {
  EXPECT_EQ(tenThousandths(0.0), 0);
  EXPECT_EQ(tenThousandths(1.0), 10000);
  EXPECT_EQ(tenThousandths(0.1 + 0.2), 3000);
  EXPECT_EQ(tenThousandths(-12.3456), -123456);
  EXPECT_EQ(tenThousandths(-0.00001), 0);
  EXPECT_EQ(tenThousandths(300000.0), 3000000000);
  EXPECT_EQ(tenThousandths(1e12 + 0.5), 10000000000005000);
}

TEST(AmountsTest, APriceIsShownWithTwoDecimalsOrFour) {
  EXPECT_EQ(shortPriceText(1.23), String(u"1.23"));
  EXPECT_EQ(shortPriceText(1.2345), String(u"1.2345"));
  EXPECT_EQ(shortPriceText(1.23004), String(u"1.23"));
  EXPECT_EQ(shortPriceText(1.2301), String(u"1.2301"));
  EXPECT_EQ(shortPriceText(-100), String(u"-100.00"));
}

TEST(AmountsTest, APriceIsRecordedWithTwoDecimalsOrUpToSix) {
  EXPECT_EQ(recordedPriceText(5), String(u"5.00"));
  EXPECT_EQ(recordedPriceText(5.1), String(u"5.10"));
  EXPECT_EQ(recordedPriceText(0.005), String(u"0.005"));
  EXPECT_EQ(recordedPriceText(1.23456), String(u"1.23456"));
  EXPECT_EQ(recordedPriceText(0.0000124), String(u"0.000012"));
  EXPECT_EQ(recordedPriceText(1.2999999), String(u"1.30"));
  EXPECT_EQ(recordedPriceText(100), String(u"100.00"));
}

} // namespace
} // namespace Tallymoor
