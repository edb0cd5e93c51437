#include "books/Gains.h"
#include <gtest/gtest.h>
#include <limits>

namespace Tallymoor {
namespace {

TEST(GainsTest, DepositsAreSubtractedFromTheGain) {
  EXPECT_DOUBLE_EQ(gainPercent(1200, 1000, 100).value(), 10);
  EXPECT_DOUBLE_EQ(gainPercent(1200, 1000, -100).value(), 30);
  EXPECT_DOUBLE_EQ(gainPercent(-1200, -1000, 0).value(), 20);
}

TEST(GainsTest, WithoutCapitalAtTheStartThereIsNoGain) {
  EXPECT_FALSE(gainPercent(1200, 0, 0));
  EXPECT_FALSE(gainPercent(1200, 0.00004, 0));
  EXPECT_FALSE(gainPercent(1200, -0.00004, 0));
  EXPECT_TRUE(gainPercent(1200, 0.0001, 0));
}

TEST(GainsTest, ANonFiniteResultIsEmpty) {
  EXPECT_FALSE(gainPercent(std::numeric_limits<double>::infinity(), 1, 0));
  EXPECT_FALSE(indexGainPercent(std::numeric_limits<double>::infinity(), 1));
}

TEST(GainsTest, ARatioToZeroIsEmpty) {
  EXPECT_DOUBLE_EQ(percentOf(25, 200).value(), 12.5);
  EXPECT_FALSE(percentOf(25, 0));
  EXPECT_FALSE(percentOf(0, 0));
}

TEST(GainsTest, AnIndexNeedsBothCloses) {
  EXPECT_DOUBLE_EQ(indexGainPercent(120, 100).value(), 20);
  EXPECT_FALSE(indexGainPercent(0, 100));
  EXPECT_FALSE(indexGainPercent(100, 0));
}

TEST(GainsTest, AGrowthOverYearsIsCompoundedFromTheGrowthOfEach) {
  EXPECT_NEAR(annualise(33.1, 3).value(), 10, 1e-9);
  EXPECT_NEAR(annualise(10, 0.5).value(), 21, 1e-9);
  EXPECT_NEAR(annualise(-19, 2).value(), -10, 1e-9);
  EXPECT_DOUBLE_EQ(annualise(0, 5).value(), 0);
  EXPECT_NEAR(annualise(7.25, 1).value(), 7.25, 1e-9);
}

TEST(GainsTest, ATotalLossIsATotalLossOverAnyTime) {
  EXPECT_DOUBLE_EQ(annualise(-100, 3).value(), -100);
  EXPECT_DOUBLE_EQ(annualise(-100, 0.5).value(), -100);
}

TEST(GainsTest, AnnualGrowthNeedsTimeAndAtMostATotalLoss) {
  EXPECT_FALSE(annualise(-100.5, 3));
  // The square of a negative factor would look like a gain.
  EXPECT_FALSE(annualise(-400, 0.5));
  EXPECT_FALSE(annualise(-50, 0));
  EXPECT_FALSE(annualise(50, 0));
  EXPECT_FALSE(annualise(50, -1));
  EXPECT_FALSE(annualise(1e300, 0.25));
  EXPECT_FALSE(annualise(std::numeric_limits<double>::quiet_NaN(), 3));
  EXPECT_FALSE(annualise(50, std::numeric_limits<double>::quiet_NaN()));
}

} // namespace
} // namespace Tallymoor
