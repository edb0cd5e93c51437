#include "widgets/Colours.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

TEST(ColoursTest, TintsLieOverWhiteAndAreOpaque) {
  EXPECT_EQ(FXRGB(235, 235, 235), makeColour(0, 0, 0, 20));
  EXPECT_EQ(FXRGB(255, 175, 175), makeColour(255, 0, 0, 80));
  EXPECT_EQ(FXRGB(175, 255, 175), makeColour(0, 255, 0, 80));
  EXPECT_EQ(FXRGB(215, 215, 255), makeColour(0, 0, 255, 40));
  EXPECT_EQ(FXRGB(255, 255, 255), makeColour(12, 34, 56, 0));
  EXPECT_EQ(FXRGB(12, 34, 56), makeColour(12, 34, 56, 255));
}

TEST(ColoursTest, EachTintHasItsColour) {
  EXPECT_EQ(FXRGB(235, 235, 235), editableTint());
  EXPECT_EQ(FXRGB(255, 175, 175), belowLimitTint());
  EXPECT_EQ(FXRGB(175, 255, 175), aboveLimitTint());
  EXPECT_EQ(FXRGB(215, 215, 255), buySignalTint());
}

TEST(ColoursTest, UnknownNamesAreOpaqueBlack) {
  EXPECT_EQ(FXRGB(0, 0, 0), namedColour("bloack"));
  EXPECT_EQ(FXRGB(0, 0, 0), namedColour("black"));
  EXPECT_EQ(FXRGB(70, 130, 180), namedColour("SteelBlue"));
}

} // namespace
} // namespace Tallymoor
