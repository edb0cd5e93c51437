#include "widgets/ChartPicture.h"
#include "ChartSamples.h"
#include "support/TestProfile.h"
#include "widgets/ChartStrokes.h"
#include <algorithm>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using namespace ChartSamples;

constexpr FXColor WHITE = FXRGB(255, 255, 255);

std::size_t countOf(const ChartPicture& picture, FXColor colour) {
  return std::size_t(std::count(picture.pixels().begin(), picture.pixels().end(), colour));
}

class ChartPictureTest : public ::testing::Test {
protected:
  static ChartPicture draw(const ChartModel& model, int width, int height) {
    const ChartLayout layout(model, width, height, metrics());
    return ChartPicture(model, layout, width, height, LINE_HEIGHT);
  }
  TestProfile m_profile{"en_AU"};
};

TEST_F(ChartPictureTest, TheLineIsDrawnInItsColourFromEndToEnd) {
  const ChartModel model = longModel(7300);
  const ChartLayout layout(model, 600, 300, metrics());
  const ChartPicture picture(model, layout, 600, 300, LINE_HEIGHT);
  const FXColor colour = model.series[0].colour;
  for (int x = int(layout.plot().x) + 1; x < int(layout.plot().right()) - 1; ++x) {
    bool found = false;
    for (int y = int(layout.plot().y); y < int(layout.plot().bottom()); ++y)
      found |= picture.at(x, y) == colour;
    ASSERT_TRUE(found) << "nothing at " << x;
  }
}

TEST_F(ChartPictureTest, DashesAreThinnerThanALine) {
  ChartModel model = longModel(300);
  const std::size_t unbroken = countOf(draw(model, 600, 300), ChartColours::BLUE);
  model.series[0].style = ChartStyle::DASHES;
  const std::size_t dashes = countOf(draw(model, 600, 300), ChartColours::BLUE);
  model.series[0].style = ChartStyle::DOTS;
  const std::size_t dots = countOf(draw(model, 600, 300), ChartColours::BLUE);
  EXPECT_GT(unbroken, dashes * 5 / 4);
  EXPECT_GT(dashes, dots);
  EXPECT_GT(dots, 100u);
}

TEST_F(ChartPictureTest, MarkersLevelsAndTheBandAreThere) {
  const ChartModel model = priceModel();
  const ChartPicture picture = draw(model, 600, 300);
  EXPECT_GT(countOf(picture, ChartColours::PURCHASE), 20u);
  EXPECT_GT(countOf(picture, model.levels[1].colour), 20u);
  ChartModel plain = model;
  plain.levels.clear();
  EXPECT_LT(countOf(picture, WHITE), countOf(draw(plain, 600, 300), WHITE) / 2);
}

TEST_F(ChartPictureTest, LinesAreSmooth) {
  const ChartPicture picture = draw(model(Date(2026, 1, 1), {1.0, 2.0}), 600, 300);
  const FXColor colour = ChartColours::BLUE;
  const auto isBetween = [&](FXColor pixel) {
    return FXREDVAL(pixel) > FXREDVAL(colour) && FXREDVAL(pixel) < 228 &&
           FXBLUEVAL(pixel) > FXBLUEVAL(colour);
  };
  EXPECT_GT(countOf(picture, colour), 300u);
  EXPECT_GT(std::count_if(picture.pixels().begin(), picture.pixels().end(), isBetween), 300);
}

TEST_F(ChartPictureTest, LinesAndMarkersGrowWithTheTexts) {
  const ChartModel model = priceModel();
  const auto coloured = [&](FXColor colour, double zoom) {
    const ChartLayout layout(model, 900, 500, metrics(zoom));
    return countOf(ChartPicture(model, layout, 900, 500, LINE_HEIGHT * zoom), colour);
  };
  EXPECT_GT(coloured(ChartColours::PURCHASE, 2.0), 3 * coloured(ChartColours::PURCHASE, 1.0));
  EXPECT_GT(coloured(ChartColours::BLUE, 2.0), coloured(ChartColours::BLUE, 1.0) * 3 / 2);
}

TEST_F(ChartPictureTest, ASingleValueIsADot) {
  const ChartModel single = model(Date(2026, 1, 1), {1.0});
  const ChartLayout layout(single, 600, 300, metrics());
  const ChartPicture picture(single, layout, 600, 300, LINE_HEIGHT);
  const ChartPixel place = layout.line(0).at(0);
  EXPECT_EQ(ChartColours::BLUE, picture.at(int(place.x), int(place.y)));
  EXPECT_EQ(ChartColours::BLUE, picture.at(int(place.x) + 1, int(place.y)));
  EXPECT_NE(ChartColours::BLUE, picture.at(int(place.x) + 5, int(place.y)));
}

TEST_F(ChartPictureTest, PurchasesAreFilledAndPointUpAndSalesAreHollowAndPointDown) {
  const ChartModel model = priceModel();
  const ChartLayout layout(model, 600, 300, metrics());
  const ChartPicture picture(model, layout, 600, 300, LINE_HEIGHT);
  const auto pixel = [&](std::size_t marker, int down) {
    const ChartPixel tip = layout.markerPosition(model.markers[marker]);
    return picture.at(int(tip.x), int(tip.y) + down);
  };
  EXPECT_EQ(ChartColours::PURCHASE, pixel(0, 5));
  EXPECT_NE(ChartColours::PURCHASE, pixel(0, -5));
  EXPECT_EQ(WHITE, pixel(1, -5));
  EXPECT_NE(WHITE, pixel(1, -9)) << "its outline";
}

TEST_F(ChartPictureTest, NothingIsDrawnOfAnEmptyModelAndAllSizesWill) {
  EXPECT_EQ(600u * 300u, countOf(draw(ChartModel(), 600, 300), WHITE));
  for (const int width : {1, 2, 7, 40, 900})
    for (const int height : {1, 3, 19, 200})
      EXPECT_EQ(width, draw(priceModel(), width, height).width());
}

} // namespace
} // namespace Tallymoor
