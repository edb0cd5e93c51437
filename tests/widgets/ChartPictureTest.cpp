#include "widgets/ChartPicture.h"
#include "ChartSamples.h"
#include "support/MessageOf.h"
#include "support/TestProfile.h"
#include "widgets/ChartStrokes.h"
#include <algorithm>
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using namespace ChartSamples;

constexpr FXColor WHITE = FXRGB(255, 255, 255);

constexpr double FONT_SIZE = 12.5;

template <class Condition>
std::size_t countIf(const ChartPicture& picture, const Condition& condition) {
  std::size_t count = 0;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x)
      count += condition(picture.at(x, y));
  return count;
}

std::size_t countOf(const ChartPicture& picture, FXColor colour) {
  return countIf(picture, [colour](FXColor pixel) { return pixel == colour; });
}

class ChartPictureTest : public ::testing::Test {
protected:
  ChartPicture draw(const ChartModel& model, int width, int height) const {
    const ChartLayout layout(model, width, height, m_font.metrics());
    return ChartPicture(model, layout, width, height, m_font);
  }
  ChartFont m_font{"sans-serif", FONT_SIZE, ChartFont::Target::SCREEN};
  TestProfile m_profile{"en_AU"};
};

TEST_F(ChartPictureTest, TheLineIsDrawnInItsColourFromEndToEnd) {
  const ChartModel model = longModel(7300);
  const ChartLayout layout(model, 600, 300, m_font.metrics());
  const ChartPicture picture(model, layout, 600, 300, m_font);
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
  EXPECT_GT(countIf(picture, isBetween), 300u);
}

TEST_F(ChartPictureTest, LinesAndMarkersGrowWithTheTexts) {
  const ChartModel model = priceModel();
  const auto coloured = [&](FXColor colour, double zoom) {
    const ChartFont font("sans-serif", FONT_SIZE * zoom, ChartFont::Target::SCREEN);
    const ChartLayout layout(model, 900, 500, font.metrics());
    return countOf(ChartPicture(model, layout, 900, 500, font), colour);
  };
  EXPECT_GT(coloured(ChartColours::PURCHASE, 2.0), 3 * coloured(ChartColours::PURCHASE, 1.0));
  EXPECT_GT(coloured(ChartColours::BLUE, 2.0), coloured(ChartColours::BLUE, 1.0) * 3 / 2);
}

TEST_F(ChartPictureTest, ASingleValueIsADot) {
  const ChartModel single = model(Date(2026, 1, 1), {1.0});
  const ChartLayout layout(single, 600, 300, m_font.metrics());
  const ChartPicture picture(single, layout, 600, 300, m_font);
  const ChartPixel place = layout.line(0).at(0);
  EXPECT_EQ(ChartColours::BLUE, picture.at(int(place.x), int(place.y)));
  EXPECT_EQ(ChartColours::BLUE, picture.at(int(place.x) + 1, int(place.y)));
  EXPECT_NE(ChartColours::BLUE, picture.at(int(place.x) + 5, int(place.y)));
}

TEST_F(ChartPictureTest, PurchasesAreFilledAndPointUpAndSalesAreHollowAndPointDown) {
  const ChartModel model = priceModel();
  const ChartLayout layout(model, 600, 300, m_font.metrics());
  const ChartPicture picture(model, layout, 600, 300, m_font);
  const auto pixel = [&](std::size_t marker, int down) {
    const ChartPixel tip = layout.markerPosition(model.markers[marker]);
    return picture.at(int(tip.x), int(tip.y) + down);
  };
  EXPECT_EQ(ChartColours::PURCHASE, pixel(0, 5));
  EXPECT_NE(ChartColours::PURCHASE, pixel(0, -5));
  EXPECT_EQ(WHITE, pixel(1, -5));
  EXPECT_NE(WHITE, pixel(1, -9)) << "its outline";
}

TEST_F(ChartPictureTest, TextsAreDrawnWhereTheLayoutPlacesThem) {
  const ChartModel model = priceModel();
  const ChartLayout layout(model, 600, 300, m_font.metrics());
  const ChartPicture picture(model, layout, 600, 300, m_font);
  std::vector<ChartText> texts{*layout.title(), *layout.valueTicks().front().label,
                               *layout.timeTicks().front().label};
  for (const ChartKey& key : layout.legend())
    texts.push_back(key.name);
  for (const ChartText& text : texts) {
    int dark = 0;
    for (int y = int(text.y); y < int(text.y + m_font.lineHeight()); ++y)
      for (int x = int(text.x); x < int(text.x + m_font.metrics().textWidth(text.text)); ++x)
        dark += FXREDVAL(picture.at(x, y)) < 128;
    EXPECT_GT(dark, 10) << text.text.toUTF8();
  }
}

TEST_F(ChartPictureTest, TheTitleIsBold) {
  ChartModel model = priceModel();
  model.title = u"Price";
  const ChartLayout layout(model, 600, 300, m_font.metrics());
  const ChartPicture picture(model, layout, 600, 300, m_font);
  const auto ink = [&](const ChartText& text) {
    int sum = 0;
    for (int y = int(text.y); y < int(text.y + m_font.lineHeight()); ++y)
      for (int x = int(text.x); x < int(text.x) + 45; ++x)
        sum += 255 - int(FXREDVAL(picture.at(x, y)));
    return sum;
  };
  ASSERT_EQ(u"Price", layout.legend()[0].name.text);
  EXPECT_GT(ink(*layout.title()), ink(layout.legend()[0].name) * 5 / 4);
}

TEST_F(ChartPictureTest, OfAnEmptyModelTheTextAloneIsDrawnAndAllSizesWill) {
  const ChartModel empty;
  const ChartPicture picture = draw(empty, 600, 300);
  const ChartLayout layout(empty, 600, 300, m_font.metrics());
  const double top = layout.emptyText().at(0).y;
  for (int y = 0; y < 300; ++y)
    for (int x = 0; x < 600; ++x)
      if (y < top || y >= top + m_font.lineHeight()) {
        ASSERT_EQ(WHITE, picture.at(x, y)) << x << " " << y;
      }
  EXPECT_LT(countOf(picture, WHITE), 600u * 300u);
  for (const int width : {1, 2, 7, 40, 900})
    for (const int height : {1, 3, 19, 200})
      EXPECT_EQ(width, draw(priceModel(), width, height).width());
}

TEST_F(ChartPictureTest, APictureThatIsTooLargeTellsWhy) {
  const ChartModel model = priceModel();
  EXPECT_THAT(messageOf([&] { draw(model, 40000, 10); }).toUTF8(),
              testing::StartsWith("A chart can't be drawn: "));
}

TEST_F(ChartPictureTest, AReadingIsDrawnWithItsDotsAndItsBox) {
  const ChartModel model = priceModel();
  const ChartLayout layout(model, 600, 300, m_font.metrics());
  const ChartPicture picture(model, layout, 600, 300, m_font);
  const ChartReading reading = layout.reading(Date(2025, 12, 1));
  paintReading(CairoContext(cairo_create(picture.surface())).get(), model, layout, reading, m_font);
  const ChartArea box = layout.boxOf(reading).area;
  EXPECT_EQ(ChartColours::AXIS, picture.at(int(box.x), int(box.y)));
  EXPECT_EQ(WHITE, picture.at(int(box.x) + 2, int(box.y) + 2));
  EXPECT_EQ(ChartColours::AXIS, picture.at(int(reading.x), int(layout.plot().bottom()) - 2));
  ASSERT_EQ(2u, reading.values.size());
  for (const ChartReading::Value& value : reading.values)
    EXPECT_EQ(model.series[value.series].colour, picture.at(int(reading.x) + 2, int(value.y)));
}

} // namespace
} // namespace Tallymoor
