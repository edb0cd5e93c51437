#include "engine/Gains.h"
#include <gtest/gtest.h>
#include <limits>

namespace Tallymoor {
namespace {

TEST(GainsTest, MoneyPutInIsTakenOffTheGain) {
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

TEST(GainsTest, AResultThatIsNotFiniteIsNone) {
  EXPECT_FALSE(gainPercent(std::numeric_limits<double>::infinity(), 1, 0));
  EXPECT_FALSE(indexGainPercent(std::numeric_limits<double>::infinity(), 1));
}

TEST(GainsTest, AnIndexNeedsBothCloses) {
  EXPECT_DOUBLE_EQ(indexGainPercent(120, 100).value(), 20);
  EXPECT_FALSE(indexGainPercent(0, 100));
  EXPECT_FALSE(indexGainPercent(100, 0));
}

} // namespace
} // namespace Tallymoor
