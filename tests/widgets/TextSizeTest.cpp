#include "widgets/TextSize.h"
#include "foundation/Settings.h"
#include "support/windows/WindowTest.h"

namespace Tallymoor {
namespace {

class TextSizeTest : public WindowTest {};

TEST_F(TextSizeTest, FollowsTheDesktopUpToTwiceTheUsualSize) {
  EXPECT_EQ(100u, desktopTextPercent(nullptr));
  EXPECT_EQ(100u, desktopTextPercent("none"));
  EXPECT_EQ(100u, desktopTextPercent("72"));
  EXPECT_EQ(125u, desktopTextPercent("120"));
  EXPECT_EQ(200u, desktopTextPercent("192"));
  EXPECT_EQ(200u, desktopTextPercent("1e9"));
}

TEST_F(TextSizeTest, TheUsersOwnSizeGoesFirstAndIsHeldWithinItsLimits) {
  const auto percentOf = [this](unsigned chosen) {
    Settings::Instance().writeUnsigned(u"Gui Settings", u"TextSize", chosen);
    return textPercent(app());
  };
  EXPECT_EQ(150u, percentOf(150));
  EXPECT_EQ(100u, percentOf(5));
  EXPECT_EQ(200u, percentOf(900));
}

TEST_F(TextSizeTest, LengthsGrowWithTheText) {
  EXPECT_EQ(30, scaledToText(30));
  Settings::Instance().writeUnsigned(u"Gui Settings", u"TextSize", 200);
  const std::unique_ptr<FXFont> large = programFont(app(), 9, FXFont::Normal);
  FXFont* const usual = app().getNormalFont();
  app().setNormalFont(large.get());
  EXPECT_NEAR(60, scaledToText(30), 6);
  app().setNormalFont(usual);
}

} // namespace
} // namespace Tallymoor
