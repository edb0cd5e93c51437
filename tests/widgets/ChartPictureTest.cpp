#include "widgets/ChartCanvas.h"
#include "ChartSamples.h"
#include "support/TestProfile.h"
#include "widgets/ChartPicture.h"
#include "widgets/ChartStrokes.h"
#include <algorithm>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using namespace ChartSamples;

constexpr FXColor WHITE = FXRGB(255, 255, 255);
constexpr FXColor BLACK = FXRGB(0, 0, 0);

bool isGrey(FXColor colour) {
  return colour != WHITE && colour != BLACK;
}

std::size_t countOf(const ChartCanvas& canvas, FXColor colour) {
  return std::size_t(std::count(canvas.pixels().begin(), canvas.pixels().end(), colour));
}

TEST(ChartCanvasTest, ALineAlongThePixelsIsAsWideAsAskedFor) {
  ChartCanvas canvas(20, 20, WHITE);
  canvas.line({{5.0, 10.0}, {15.0, 10.0}}, 2.0, BLACK);
  EXPECT_EQ(BLACK, canvas.at(10, 9));
  EXPECT_EQ(BLACK, canvas.at(10, 10));
  EXPECT_EQ(WHITE, canvas.at(10, 8));
  EXPECT_EQ(WHITE, canvas.at(10, 11));
  EXPECT_EQ(WHITE, canvas.at(2, 10));
  EXPECT_EQ(WHITE, canvas.at(18, 10));
}

TEST(ChartCanvasTest, ASlantingLineIsSmooth) {
  ChartCanvas canvas(30, 30, WHITE);
  canvas.line({{2.0, 3.0}, {28.0, 11.0}}, 1.8, BLACK);
  EXPECT_TRUE(std::any_of(canvas.pixels().begin(), canvas.pixels().end(), isGrey));
  ChartCanvas steep(30, 30, WHITE);
  steep.line({{3.0, 2.0}, {11.0, 28.0}}, 1.8, BLACK);
  for (int x = 0; x < 30; ++x)
    for (int y = 0; y < 30; ++y)
      ASSERT_EQ(canvas.at(x, y), steep.at(y, x)) << x << "," << y;
}

TEST(ChartCanvasTest, PartsThatOverlapAreNotPaintedTwice) {
  ChartCanvas once(30, 30, WHITE);
  once.line({{2.0, 3.0}, {28.0, 11.0}}, 1.8, BLACK);
  ChartCanvas twice(30, 30, WHITE);
  twice.line({{2.0, 3.0}, {28.0, 11.0}, {2.0, 3.0}}, 1.8, BLACK);
  EXPECT_EQ(once.pixels(), twice.pixels());
}

TEST(ChartCanvasTest, APatternLeavesGaps) {
  ChartCanvas canvas(100, 9, WHITE);
  canvas.line({{0.0, 4.5}, {100.0, 4.5}}, 1.0, BLACK, {10.0, 10.0});
  EXPECT_EQ(BLACK, canvas.at(5, 4));
  EXPECT_EQ(WHITE, canvas.at(15, 4));
  EXPECT_EQ(BLACK, canvas.at(25, 4));
  EXPECT_EQ(WHITE, canvas.at(95, 4));
}

TEST(ChartCanvasTest, APatternGoesOnAroundCorners) {
  ChartCanvas straight(60, 9, WHITE);
  straight.line({{0.0, 4.5}, {60.0, 4.5}}, 1.0, BLACK, {7.0, 5.0});
  ChartCanvas inPieces(60, 9, WHITE);
  inPieces.line({{0.0, 4.5}, {3.0, 4.5}, {20.0, 4.5}, {41.5, 4.5}, {60.0, 4.5}}, 1.0, BLACK, {7.0, 5.0});
  EXPECT_EQ(straight.pixels(), inPieces.pixels());
}

TEST(ChartCanvasTest, ASinglePointIsADot) {
  ChartCanvas canvas(20, 20, WHITE);
  canvas.line({{10.0, 10.0}}, 2.0, BLACK);
  EXPECT_EQ(BLACK, canvas.at(10, 10));
  EXPECT_EQ(BLACK, canvas.at(8, 10));
  EXPECT_EQ(WHITE, canvas.at(14, 10));
  canvas.line({}, 2.0, BLACK); // nothing
}

TEST(ChartCanvasTest, WhatIsOutsideIsCutOff) {
  ChartCanvas canvas(10, 10, WHITE);
  canvas.line({{-1000.0, -1000.0}, {1000.0, 1000.0}}, 2.0, BLACK);
  EXPECT_EQ(BLACK, canvas.at(5, 5));
  canvas.line({{-50.0, -3.0}, {-40.0, 200.0}}, 2.0, BLACK, {3.0, 3.0});
  canvas.fill({-5, -5, 100, 7}, BLACK);
  EXPECT_EQ(BLACK, canvas.at(0, 0));
  EXPECT_EQ(BLACK, canvas.at(9, 1));
  EXPECT_EQ(WHITE, canvas.at(0, 7));
  canvas.triangle({9.0, 0.0}, 9.0, false, BLACK, BLACK);
}

TEST(ChartCanvasTest, AFillMayBeThin) {
  ChartCanvas canvas(4, 4, WHITE);
  canvas.fill({0, 0, 4, 4}, BLACK, 0.2);
  EXPECT_EQ(FXRGB(204, 204, 204), canvas.at(2, 2));
}

TEST(ChartCanvasTest, TrianglesPointAtTheirPlace) {
  ChartCanvas canvas(30, 30, WHITE);
  canvas.triangle({15.0, 10.0}, 10.0, true, BLACK, BLACK);
  EXPECT_EQ(BLACK, canvas.at(15, 15));
  EXPECT_EQ(BLACK, canvas.at(12, 18));
  EXPECT_EQ(WHITE, canvas.at(15, 6));
  ChartCanvas hollow(30, 30, WHITE);
  hollow.triangle({15.0, 20.0}, 10.0, false, BLACK, WHITE);
  EXPECT_EQ(WHITE, hollow.at(15, 13));
  EXPECT_NE(WHITE, hollow.at(15, 10));
}

class ChartPictureTest : public ::testing::Test {
protected:
  static ChartCanvas draw(const ChartModel& model, int width, int height) {
    const ChartLayout layout(model, width, height, metrics());
    return drawChart(model, layout, width, height, LINE_HEIGHT);
  }
  TestProfile m_profile{"en_AU"};
};

TEST_F(ChartPictureTest, TheLineIsDrawnInItsColourFromEndToEnd) {
  const ChartModel model = longModel(7300);
  const ChartLayout layout(model, 600, 300, metrics());
  const ChartCanvas canvas = drawChart(model, layout, 600, 300, LINE_HEIGHT);
  const FXColor colour = model.series[0].colour;
  for (int x = int(layout.plot().x) + 1; x < int(layout.plot().right()) - 1; ++x) {
    bool found = false;
    for (int y = int(layout.plot().y); y < int(layout.plot().bottom()); ++y)
      found |= canvas.at(x, y) == colour;
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
  const ChartCanvas canvas = draw(model, 600, 300);
  EXPECT_GT(countOf(canvas, ChartColours::PURCHASE), 20u);
  EXPECT_GT(countOf(canvas, model.levels[1].colour), 20u);
  ChartModel plain = model;
  plain.levels.clear();
  EXPECT_LT(countOf(canvas, WHITE), countOf(draw(plain, 600, 300), WHITE) / 2);
}

TEST_F(ChartPictureTest, NothingIsDrawnOfAnEmptyModelAndAllSizesWill) {
  EXPECT_EQ(600u * 300u, countOf(draw(ChartModel(), 600, 300), WHITE));
  for (const int width : {1, 2, 7, 40, 900})
    for (const int height : {1, 3, 19, 200})
      EXPECT_EQ(width, draw(priceModel(), width, height).width());
}

} // namespace
} // namespace Tallymoor
