#include "widgets/ChartLayout.h"
#include "ChartSamples.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using namespace ChartSamples;
using testing::ElementsAre;
using testing::IsEmpty;

class ChartLayoutTest : public ::testing::Test {
protected:
  TestProfile m_profile{"en_AU"};

  static std::vector<String> labels(const std::vector<ChartTick>& ticks) {
    std::vector<String> texts;
    for (const ChartTick& tick : ticks)
      if (tick.label)
        texts.push_back(tick.label->text);
    return texts;
  }
  static std::vector<String> keys(const ChartLayout& layout) {
    std::vector<String> texts;
    for (const ChartKey& key : layout.legend())
      texts.push_back(key.name.text);
    return texts;
  }
  static std::vector<ChartText> allTexts(const ChartLayout& layout) {
    std::vector<ChartText> texts = layout.emptyText();
    if (layout.title())
      texts.push_back(*layout.title());
    for (const ChartKey& key : layout.legend())
      texts.push_back(key.name);
    for (const auto* ticks : {&layout.valueTicks(), &layout.timeTicks()})
      for (const ChartTick& tick : *ticks)
        if (tick.label)
          texts.push_back(*tick.label);
    return texts;
  }
  static void expectReadable(const ChartLayout& layout, const ChartMetrics& measure) {
    const std::vector<ChartText> texts = allTexts(layout);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      const std::string where = texts[i].text.toUTF8() + " at " + std::to_string(layout.width()) + "x" +
                                std::to_string(layout.height());
      EXPECT_TRUE(layout.isEmpty() || isInside(texts[i], layout, measure)) << where;
      for (std::size_t other = 0; other < i; ++other)
        EXPECT_FALSE(overlap(texts[i], texts[other], measure))
            << where << " on " << texts[other].text.toUTF8();
    }
  }
  static bool isInside(const ChartText& text, const ChartLayout& layout, const ChartMetrics& measure) {
    return text.x >= 0.0 && text.y >= 0.0 && text.x + measure.textWidth(text.text) <= layout.width() &&
           text.y + measure.lineHeight <= layout.height();
  }
  static bool overlap(const ChartText& a, const ChartText& b, const ChartMetrics& measure) {
    return a.x < b.x + measure.textWidth(b.text) && b.x < a.x + measure.textWidth(a.text) &&
           a.y < b.y + measure.lineHeight && b.y < a.y + measure.lineHeight;
  }
};

TEST_F(ChartLayoutTest, PointsStandInThePlotByTheirDayAndValue) {
  const ChartModel model = ChartSamples::model(Date(2026, 3, 1), {10.0, 30.0, 20.0});
  const ChartLayout layout(model, 600, 300, metrics());
  const std::vector<ChartPixel> line = layout.line(0);
  ASSERT_EQ(3u, line.size());
  EXPECT_DOUBLE_EQ(layout.plot().x, line[0].x);
  EXPECT_DOUBLE_EQ(layout.plot().x + layout.plot().width / 2, line[1].x);
  EXPECT_DOUBLE_EQ(layout.plot().right(), line[2].x);
  EXPECT_GT(line[0].y, line[2].y);
  EXPECT_NEAR((line[0].y + line[1].y) / 2, line[2].y, 1e-9);
  EXPECT_GE(line[1].y, layout.plot().y);
  EXPECT_LE(line[0].y, layout.plot().bottom());
  EXPECT_DOUBLE_EQ(line[1].y, layout.yOf(30.0));
}

TEST_F(ChartLayoutTest, TitleLegendAndAxesAreThereWhereThereIsRoom) {
  const ChartModel model = priceModel();
  const ChartLayout layout(model, 700, 320, metrics());
  ASSERT_TRUE(layout.title());
  EXPECT_EQ(u"AAA.AX", layout.title()->text);
  EXPECT_THAT(keys(layout), ElementsAre(u"Price", u"LR", u"Min 11.00", u"Max 13.50", u"Purchases", u"Sales"));
  EXPECT_THAT(labels(layout.valueTicks()),
              ElementsAre(u"11.00", u"11.50", u"12.00", u"12.50", u"13.00", u"13.50"));
  EXPECT_EQ(u"May 2025", labels(layout.timeTicks()).front());
  EXPECT_THAT(labels(layout.timeTicks()), testing::Contains(u"2026"));
}

TEST_F(ChartLayoutTest, NoTextIsCutOrLiesOnAnother) {
  ChartModel huge = longModel(400);
  for (ChartPoint& point : huge.series[0].points)
    point.value *= 1e12;
  const ChartModel one = longModel(1);
  const ChartModel none = longModel(0);
  const std::vector<ChartModel> models{
      longModel(7300), longModel(90), longModel(8), priceModel(), huge, one, none};
  for (const char* locale : {"en_AU", "de_DE"}) {
    m_profile.setLocale(locale);
    for (const ChartModel& model : models)
      for (const double zoom : {1.0, 2.0})
        for (double width = 20; width < 1500; width = std::floor(width * 1.6))
          for (double height = 15; height < 900; height = std::floor(height * 1.5)) {
            const ChartMetrics measure = metrics(zoom);
            const ChartLayout layout(model, width, height, measure);
            expectReadable(layout, measure);
            if (HasFailure())
              return;
            ASSERT_GT(layout.isEmpty() ? 1.0 : layout.plot().width, 0.0);
          }
  }
}

TEST_F(ChartLayoutTest, TheTimeAxisSuitsTheRangeAndTheWidth) {
  const ChartModel years = longModel(7300);
  EXPECT_EQ(u"2007", labels(ChartLayout(years, 1200, 300, metrics()).timeTicks()).at(0));
  const std::vector<String> narrow = labels(ChartLayout(years, 300, 300, metrics()).timeTicks());
  EXPECT_THAT(narrow, ElementsAre(u"2010", u"2015", u"2020", u"2025"));
  const ChartModel year = longModel(365);
  const std::vector<String> months = labels(ChartLayout(year, 1200, 300, metrics()).timeTicks());
  EXPECT_EQ(12u, months.size());
  EXPECT_EQ(u"Apr 2025", months[0]);
  const std::vector<String> quarters = labels(ChartLayout(year, 330, 300, metrics()).timeTicks());
  EXPECT_THAT(quarters, ElementsAre(u"Apr 2025", u"Jul", u"Oct", u"2026"));
  const ChartModel days = longModel(3);
  EXPECT_EQ(3u, labels(ChartLayout(days, 600, 300, metrics()).timeTicks()).size());
}

TEST_F(ChartLayoutTest, WithoutARoundDayInItTheTimeAxisTellsItsEnds) {
  // No month starts in this range, and weeks don't fit.
  const ChartModel model = ChartSamples::model(Date(2026, 3, 3), waves(25));
  const std::vector<String> texts = labels(ChartLayout(model, 250, 300, metrics()).timeTicks());
  EXPECT_THAT(texts, testing::Not(IsEmpty()));
}

TEST_F(ChartLayoutTest, DecadesCostNoMoreThanTheWidthAndLoseNoExtreme) {
  ChartModel model = longModel(7300);
  model.series[0].points[3210].value = 200000.0;
  model.series[0].points[4321].value = -9000.0;
  const ChartLayout layout(model, 500, 300, metrics());
  const std::vector<ChartPixel> line = layout.line(0);
  EXPECT_LE(line.size(), 4u * 502u);
  EXPECT_TRUE(std::is_sorted(line.begin(), line.end(),
                             [](const ChartPixel& a, const ChartPixel& b) { return a.x < b.x; }));
  const auto has = [&line](double y) {
    return std::any_of(line.begin(), line.end(), [y](const ChartPixel& pixel) { return pixel.y == y; });
  };
  EXPECT_TRUE(has(layout.yOf(200000.0)));
  EXPECT_TRUE(has(layout.yOf(-9000.0)));
  // In each column, the omitted values are between the kept ones.
  for (const ChartPoint& point : model.series[0].points) {
    const double x = std::floor(layout.xOf(point.day));
    double least = INFINITE;
    double greatest = -INFINITE;
    for (const ChartPixel& pixel : line)
      if (std::floor(pixel.x) == x) {
        least = std::min(least, pixel.y);
        greatest = std::max(greatest, pixel.y);
      }
    ASSERT_LE(least, layout.yOf(point.value));
    ASSERT_GE(greatest, layout.yOf(point.value));
  }
  EXPECT_DOUBLE_EQ(layout.plot().x, line.front().x);
  EXPECT_DOUBLE_EQ(layout.plot().right(), line.back().x);
}

TEST_F(ChartLayoutTest, WhereThereIsRoomEveryPointIsKept) {
  const ChartModel model = longModel(300);
  EXPECT_EQ(300u, ChartLayout(model, 1000, 300, metrics()).line(0).size());
}

TEST_F(ChartLayoutTest, NonFiniteValuesAreOmitted) {
  ChartModel model = ChartSamples::model(Date(2026, 3, 1), {10.0, NOT_A_NUMBER, INFINITE, 20.0, -INFINITE});
  const ChartLayout layout(model, 600, 300, metrics());
  EXPECT_EQ(2u, layout.line(0).size());
  EXPECT_EQ(Date(2026, 3, 4), layout.lastDay());
  EXPECT_THAT(layout.reading(Date(2026, 3, 2)).values, IsEmpty());
  for (const ChartPixel& pixel : layout.line(0))
    EXPECT_TRUE(std::isfinite(pixel.x) && std::isfinite(pixel.y));
  model.series[0].points = {{Date(2026, 3, 1), NOT_A_NUMBER}};
  EXPECT_TRUE(ChartLayout(model, 600, 300, metrics()).isEmpty());
}

TEST_F(ChartLayoutTest, AnEmptyModelSaysSo) {
  ChartModel model;
  model.emptyText = u"No prices to show yet.";
  model.levels = {{u"Min", 3.0, ChartColours::GREEN}};
  const ChartLayout layout(model, 600, 300, metrics());
  EXPECT_TRUE(layout.isEmpty());
  ASSERT_EQ(1u, layout.emptyText().size());
  EXPECT_EQ(u"No prices to show yet.", layout.emptyText()[0].text);
  EXPECT_FALSE(layout.dayAt(300.0));
  EXPECT_FALSE(layout.band());
  const ChartLayout narrow(model, 80, 300, metrics());
  ASSERT_EQ(3u, narrow.emptyText().size());
  EXPECT_EQ(u"No prices", narrow.emptyText()[0].text);
  EXPECT_EQ(u"to show", narrow.emptyText()[1].text);
}

TEST_F(ChartLayoutTest, ASinglePointStandsInTheMiddle) {
  const ChartModel model = ChartSamples::model(Date(2026, 3, 3), {5000.0});
  const ChartLayout layout(model, 600, 300, metrics());
  const std::vector<ChartPixel> line = layout.line(0);
  ASSERT_EQ(1u, line.size());
  EXPECT_NEAR(layout.plot().x + layout.plot().width / 2, line[0].x, 1e-9);
  EXPECT_NEAR(layout.plot().y + layout.plot().height / 2, line[0].y, 1e-6);
  EXPECT_EQ(Date(2026, 3, 3), layout.dayAt(layout.plot().x + 3));
}

TEST_F(ChartLayoutTest, TheDayUnderThePointerIsTheNearestWithValues) {
  ChartModel model = ChartSamples::model(Date(2026, 3, 1), {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0});
  auto& points = model.series[0].points;
  points.erase(points.begin() + 3, points.begin() + 6); // 4, 5 and 6 March.
  const ChartLayout layout(model, 600, 300, metrics());
  const double day = layout.plot().width / 8;
  EXPECT_EQ(Date(2026, 3, 1), layout.dayAt(layout.plot().x));
  EXPECT_EQ(Date(2026, 3, 1), layout.dayAt(layout.plot().x + 0.4 * day));
  EXPECT_EQ(Date(2026, 3, 2), layout.dayAt(layout.plot().x + 0.6 * day));
  EXPECT_EQ(Date(2026, 3, 3), layout.dayAt(layout.plot().x + 3.9 * day));
  EXPECT_EQ(Date(2026, 3, 7), layout.dayAt(layout.plot().x + 4.2 * day));
  EXPECT_EQ(Date(2026, 3, 9), layout.dayAt(layout.plot().right()));
  EXPECT_FALSE(layout.dayAt(0.0));
  EXPECT_FALSE(layout.dayAt(600.0));
}

TEST_F(ChartLayoutTest, AMarkerCloseToThePointerIsMet) {
  ChartModel model = longModel(7300);
  const Date traded(2015, 7, 8);
  model.markers = {{traded, 60000.0, true, u"Bought"}};
  const ChartLayout layout(model, 500, 300, metrics());
  const double x = layout.xOf(traded);
  EXPECT_EQ(traded, layout.dayAt(x + 2.5));
  EXPECT_EQ(traded, layout.dayAt(x - 2.5));
  EXPECT_NE(traded, layout.dayAt(x + 3.5));
}

TEST_F(ChartLayoutTest, AReadingHasTheValuesOfTheDayWithoutInterpolation) {
  ChartModel model = ChartSamples::model(Date(2026, 3, 1), {10.0, 20.0, 30.0});
  model.series.push_back(series(u"Index", Date(2026, 3, 1), {11.0}));
  model.series[1].points.push_back({Date(2026, 3, 3), 31.0});
  model.series.push_back(
      {u"Line", 0, ChartStyle::DOTS, {{Date(2026, 3, 1), 5.0}, {Date(2026, 3, 3), 15.0}}, true});
  const ChartLayout layout(model, 600, 300, metrics());
  const ChartReading reading = layout.reading(Date(2026, 3, 2));
  ASSERT_EQ(2u, reading.values.size()) << "the index has no value on the day";
  EXPECT_EQ(0u, reading.values[0].series);
  EXPECT_DOUBLE_EQ(20.0, reading.values[0].value);
  EXPECT_DOUBLE_EQ(layout.yOf(20.0), reading.values[0].y);
  EXPECT_EQ(2u, reading.values[1].series);
  EXPECT_DOUBLE_EQ(10.0, reading.values[1].value);
  EXPECT_EQ(3u, layout.reading(Date(2026, 3, 3)).values.size());
}

TEST_F(ChartLayoutTest, AStraightLineHasNoValueBeyondItsEnds) {
  const ChartModel model = priceModel();
  const ChartLayout layout(model, 600, 300, metrics());
  EXPECT_EQ(1u, layout.reading(Date(2025, 9, 4)).values.size());
  EXPECT_EQ(2u, layout.reading(Date(2025, 9, 5)).values.size());
  EXPECT_EQ(2u, layout.reading(Date(2026, 3, 3)).values.size());
}

TEST_F(ChartLayoutTest, AStraightLineBeyondTheLastValueStaysInThePlot) {
  ChartModel model = priceModel();
  model.series[1].points = {{Date(2025, 2, 28), 11.0}, {Date(2026, 3, 8), 13.0}};
  const ChartLayout layout(model, 600, 300, metrics());
  EXPECT_DOUBLE_EQ(layout.plot().x, layout.line(1).front().x);
  EXPECT_DOUBLE_EQ(layout.plot().right(), layout.line(1).back().x);
  EXPECT_LT(layout.line(0).back().x, layout.plot().right());
  EXPECT_EQ(Date(2026, 3, 3), layout.dayAt(layout.plot().right())) << "the last day with a price";
  EXPECT_EQ(Date(2025, 3, 3), layout.dayAt(layout.plot().x));
}

TEST_F(ChartLayoutTest, TheBoxTellsTheDayItsValuesAndItsTrades) {
  const ChartModel model = priceModel();
  const ChartLayout layout(model, 600, 300, metrics());
  const ChartBox box = layout.boxOf(layout.reading(Date(2025, 12, 1)));
  std::vector<String> lines;
  for (const ChartBox::Line& line : box.lines)
    lines.push_back(line.text.text);
  ASSERT_EQ(4u, lines.size());
  EXPECT_EQ(Date(2025, 12, 1).toString(DATE_DISPLAY_LOCAL), lines[0]);
  EXPECT_TRUE(lines[1].startsWith(u"Price  1")) << lines[1].toUTF8();
  EXPECT_EQ(u"LR  11.9721", lines[2]);
  EXPECT_EQ(u"Sold 50 at 12.50", lines[3]);
}

TEST_F(ChartLayoutTest, TheBoxStaysInsideAndBesideTheCrosshair) {
  const ChartModel model = priceModel();
  const ChartLayout layout(model, 600, 300, metrics());
  for (const ChartPoint& point : model.series[0].points) {
    const ChartReading reading = layout.reading(point.day);
    const ChartBox box = layout.boxOf(reading);
    ASSERT_GE(box.area.x, 0.0);
    ASSERT_GE(box.area.y, 0.0);
    ASSERT_LE(box.area.right(), 600.0);
    ASSERT_LE(box.area.bottom(), 300.0);
    ASSERT_TRUE(box.area.right() < reading.x || box.area.x > reading.x);
    for (const ChartBox::Line& line : box.lines)
      ASSERT_LE(line.text.x + metrics().textWidth(line.text.text), box.area.right());
  }
}

TEST_F(ChartLayoutTest, TheBoxGoesDownWhereItWouldHideTheValues) {
  const ChartModel model = ChartSamples::model(Date(2026, 3, 1), {10.0, 90.0, 20.0});
  const ChartLayout layout(model, 600, 300, metrics());
  const ChartBox atTop = layout.boxOf(layout.reading(Date(2026, 3, 1)));
  const ChartBox atBottom = layout.boxOf(layout.reading(Date(2026, 3, 2)));
  EXPECT_LT(atTop.area.bottom(), layout.yOf(10.0));
  EXPECT_GT(atBottom.area.y, layout.yOf(90.0));
  EXPECT_LE(atBottom.area.bottom(), layout.plot().bottom());
}

TEST_F(ChartLayoutTest, DaysAreWalkedOneByOneUpToTheEnds) {
  ChartModel model = ChartSamples::model(Date(2026, 3, 6), {1.0}); // A Friday.
  model.series[0].points.push_back({Date(2026, 3, 9), 2.0});
  model.series[0].points.push_back({Date(2026, 3, 10), 3.0});
  const ChartLayout layout(model, 600, 300, metrics());
  EXPECT_EQ(Date(2026, 3, 9), layout.dayBeside(Date(2026, 3, 6), 1));
  EXPECT_EQ(Date(2026, 3, 6), layout.dayBeside(Date(2026, 3, 9), -1));
  EXPECT_EQ(Date(2026, 3, 6), layout.dayBeside(Date(2026, 3, 6), -1));
  EXPECT_EQ(Date(2026, 3, 10), layout.dayBeside(Date(2026, 3, 6), 1000));
  EXPECT_EQ(Date(2026, 3, 9), layout.dayBeside(Date(2026, 3, 7), 0)) << "a day without values";
  EXPECT_EQ(Date(2026, 3, 10), layout.dayBeside(Date(2026, 4, 7), 0));
}

TEST_F(ChartLayoutTest, TwoLevelsBoundABand) {
  const ChartModel model = priceModel();
  const ChartLayout layout(model, 600, 300, metrics());
  ASSERT_TRUE(layout.levelPosition(0) && layout.levelPosition(1) && layout.band());
  EXPECT_DOUBLE_EQ(*layout.levelPosition(1), layout.band()->y);
  EXPECT_DOUBLE_EQ(*layout.levelPosition(0), layout.band()->bottom());
}

TEST_F(ChartLayoutTest, ALevelFarAwayIsToldInTheLegendAlone) {
  ChartModel model = priceModel();
  model.levels = {{u"Max", 500.0, ChartColours::GREEN}};
  const ChartLayout layout(model, 600, 300, metrics());
  EXPECT_FALSE(layout.levelPosition(0));
  EXPECT_FALSE(layout.band());
  EXPECT_THAT(keys(layout), testing::Contains(u"Max 500.00"));
  model.levels.push_back({u"Min", 11.5, ChartColours::VERMILLION});
  const ChartLayout both(model, 600, 300, metrics());
  ASSERT_TRUE(both.band()) << "the band reaches up to the plot's edge";
  EXPECT_NEAR(both.plot().y, both.band()->y, 1e-9);
}

TEST_F(ChartLayoutTest, AMarkerIsAtItsOwnPrice) {
  ChartModel model = priceModel();
  model.markers = {{Date(2025, 4, 1), 2.0, true, u"Bought"}};
  const ChartLayout layout(model, 600, 300, metrics());
  const ChartPixel place = layout.markerPosition(model.markers[0]);
  EXPECT_DOUBLE_EQ(layout.xOf(Date(2025, 4, 1)), place.x);
  EXPECT_LE(place.y, layout.plot().bottom()) << "the axis reaches down to it";
}

TEST_F(ChartLayoutTest, ALegendWithoutRoomIsLeftOutAsAWhole) {
  const ChartModel model = priceModel();
  EXPECT_THAT(ChartLayout(model, 600, 80, metrics()).legend(), IsEmpty());
  EXPECT_THAT(ChartLayout(model, 90, 300, metrics()).legend(), IsEmpty());
  const ChartLayout wrapped(model, 300, 300, metrics());
  ASSERT_EQ(6u, wrapped.legend().size());
  EXPECT_GT(wrapped.legend().back().name.y, wrapped.legend().front().name.y);
}

} // namespace
} // namespace Tallymoor
