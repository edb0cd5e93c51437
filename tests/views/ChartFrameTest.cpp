#include "ViewsTest.h"
#include "session/BookQuestions.h"
#include "views/CapitalChart.h"
#include "views/PriceChart.h"
#include "widgets/ChartView.h"

namespace Tallymoor {
namespace {

class ChartFrameTest : public ViewsTest {
protected:
  ~ChartFrameTest() override { Settings::Instance().deleteSection(u"Charts"); }

  template <class Chart>
  Chart& place(const Portfolios& portfolios) {
    auto* chart = new Chart(mainWindow().contentFrame(), portfolios);
    chart->create();
    chart->position(0, 0, 700, 400);
    settle();
    return *chart;
  }
  Portfolios all() {
    Portfolios users;
    for (const auto& [name, user] : portfolios())
      users.push_back(user.get());
    return users;
  }
  SharePortfolioUser& addCurrentPortfolio() {
    SharePortfolioUser& user = addTrading();
    updateCapitalRecord(user);
    return user;
  }
  static FXButton& rangeButton(ChartFrame& chart, const std::string& label) {
    return dynamic_cast<FXButton&>(button(chart, label));
  }
  static std::string pressedRange(ChartFrame& chart) {
    std::string pressed;
    for (FXButton* button : findAll<FXButton>(chart))
      if (button->getState() == STATE_ENGAGED)
        pressed += button->getText().text();
    return pressed;
  }
  static Date firstDay(ChartFrame& chart) { return chart.chart().model().series.at(0).points.front().day; }
};

TEST_F(ChartFrameTest, ARangeEndsOnItsDay) {
  const Date end(2026, 5, 31);
  EXPECT_EQ(Date(2026, 2, 28), startOf(ChartRange::THREE_MONTHS, end));
  EXPECT_EQ(Date(2025, 5, 31), startOf(ChartRange::ONE_YEAR, end));
  EXPECT_EQ(Date(2023, 5, 31), startOf(ChartRange::THREE_YEARS, end));
  EXPECT_EQ(Date(1, 1, 1), startOf(ChartRange::ALL, end));
}

TEST_F(ChartFrameTest, TheCapitalIsShownUpToToday) {
  addCurrentPortfolio();
  auto& chart = place<CapitalChart>(all());
  const ChartModel& model = chart.chart().model();
  EXPECT_EQ(u"Capital of Trading, apart from deposits and withdrawals", model.title);
  EXPECT_EQ(Date(2026, 2, 1), firstDay(chart));
  EXPECT_EQ(Date(2026, 3, 3), model.series.at(0).points.back().day);
}

TEST_F(ChartFrameTest, TheViewDateEndsTheChart) {
  addCurrentPortfolio();
  auto& chart = place<CapitalChart>(all());
  Date::setFixedDate(Date(2026, 2, 20));
  chart.refresh();
  EXPECT_EQ(Date(2026, 2, 20), chart.chart().model().series.at(0).points.back().day);
}

TEST_F(ChartFrameTest, TheRangeIsChosenByItsButtonAndKept) {
  addCurrentPortfolio();
  market().setHistory(u"AAA.AX", Date(2021, 1, 4), Date(2026, 1, 19), 10.0);
  auto& chart = place<PriceChart>(all());
  chart.show(u"AAA.AX");
  settle();
  EXPECT_EQ("1 Year", pressedRange(chart));
  EXPECT_EQ(Date(2025, 3, 3), firstDay(chart));
  press(chart, "3 Months");
  settle();
  EXPECT_EQ("3 Months", pressedRange(chart));
  EXPECT_EQ(Date(2025, 12, 3), firstDay(chart));
  press(chart, "3 Years");
  settle();
  EXPECT_EQ("3 Years", pressedRange(chart));
  EXPECT_EQ(Date(2023, 3, 3), firstDay(chart));
  press(chart, "All");
  settle();
  EXPECT_EQ("All", pressedRange(chart));
  EXPECT_GE(Date(2023, 3, 3), firstDay(chart));
  EXPECT_EQ(ChartRange::ALL, place<PriceChart>(all()).range()) << "for the next chart of its kind";
  EXPECT_EQ(ChartRange::ONE_YEAR, place<CapitalChart>(all()).range()) << "another kind has its own";
}

TEST_F(ChartFrameTest, AClickThatTakesItsTimeChoosesTheRange) {
  addCurrentPortfolio();
  auto& chart = place<CapitalChart>(all());
  FXEvent click{};
  FXButton& years = rangeButton(chart, "3 Years");
  years.handle(&app(), FXSEL(SEL_LEFTBUTTONPRESS, 0), &click);
  for (FXButton* button : findAll<FXButton>(chart))
    button->handle(&app(), FXSEL(SEL_UPDATE, 0), nullptr);
  EXPECT_EQ(ChartRange::ONE_YEAR, chart.range());
  years.handle(&app(), FXSEL(SEL_LEFTBUTTONRELEASE, 0), &click);
  EXPECT_EQ(ChartRange::THREE_YEARS, chart.range());
  EXPECT_EQ("3 Years", pressedRange(chart));
}

TEST_F(ChartFrameTest, ChartsOfAKindTakeOverTheChoice) {
  addCurrentPortfolio();
  auto& first = place<CapitalChart>(all());
  auto& second = place<CapitalChart>(all());
  settle();
  press(first, "All");
  for (FXButton* button : findAll<FXButton>(second))
    button->handle(&app(), FXSEL(SEL_UPDATE, 0), nullptr);
  EXPECT_EQ("All", pressedRange(second));
}

TEST_F(ChartFrameTest, AnUnknownKeptRangeIsAYear) {
  Settings::Instance().writeInt(u"Charts", u"CapitalRange", 17);
  addCurrentPortfolio();
  EXPECT_EQ(ChartRange::ONE_YEAR, place<CapitalChart>(all()).range());
}

TEST_F(ChartFrameTest, AStockIsShownWhenItIsChosen) {
  addCurrentPortfolio();
  auto& chart = place<PriceChart>(all());
  EXPECT_EQ(u"Choose a stock to see its prices.", chart.chart().model().emptyText);
  EXPECT_TRUE(chart.chart().chart().isEmpty());
  chart.show(u"AAA.AX");
  settle();
  EXPECT_EQ(u"AAA.AX", chart.chart().model().title);
  EXPECT_EQ(2u, chart.chart().model().markers.size());
  EXPECT_DOUBLE_EQ(6.6, chart.chart().model().series.at(0).points.back().value);
  chart.show(String());
  EXPECT_EQ(u"Choose a stock to see its prices.", chart.chart().model().emptyText);
}

TEST_F(ChartFrameTest, ChoosingAStockLoadsItsHistoryOnceAndAsksNothing) {
  market().setHistory(u"BBB.AX", Date(2025, 1, 6), Date(2026, 3, 3), 4.0);
  auto& chart = place<PriceChart>({});
  chart.show(u"BBB.AX");
  settle();
  EXPECT_EQ(Date(2025, 3, 3), firstDay(chart));
  const std::size_t requests = market().requested(MarketFixture::Page::History).size();
  EXPECT_GT(requests, 0u);
  chart.refresh();
  settle();
  chart.show(u"BBB.AX");
  settle();
  EXPECT_EQ(requests, market().requested(MarketFixture::Page::History).size());
}

TEST_F(ChartFrameTest, HolesInTheCacheAreFilledFromTheSource) {
  market().setHistory(u"BBB.AX", Date(2022, 1, 3), Date(2026, 3, 3), 4.0);
  TallymoorInternet::Instance().completeHistory(
      {{u"BBB.AX", Date(2022, 6, 1), Date(2022, 6, 30), HistoryNeed::Kind::Backward}}, nullptr);
  TallymoorInternet::Instance().completeHistory(
      {{u"BBB.AX", Date(2024, 6, 1), Date(2024, 6, 30), HistoryNeed::Kind::Backward}}, nullptr);
  Settings::Instance().writeInt(u"Charts", u"PriceRange", std::int32_t(ChartRange::ALL));
  auto& chart = place<PriceChart>({});
  chart.show(u"BBB.AX");
  settle();
  Date before = firstDay(chart);
  EXPECT_LE(before, Date(2022, 6, 1));
  for (const ChartPoint& point : chart.chart().model().series.at(0).points) {
    EXPECT_LE(point.day.daysSince(before), 3) << point.day.toString(DATE_DISPLAY_DMY).toUTF8();
    before = point.day;
  }
}

TEST_F(ChartFrameTest, AFailedLoadIsSilent) {
  market().refuse(MarketFixture::Page::History, 500);
  auto& chart = place<PriceChart>({});
  chart.show(u"BBB.AX");
  settle();
  EXPECT_EQ(
      u"No prices of BBB.AX are known in this time. Check the code by searching for the company, try Tools, "
      u"Refresh Prices, or show a longer time.",
      chart.chart().model().emptyText);
  EXPECT_THAT(boxes(), testing::IsEmpty());
}

TEST_F(ChartFrameTest, RefreshTakesInNewPrices) {
  addCurrentPortfolio();
  auto& chart = place<PriceChart>(all());
  chart.show(u"AAA.AX");
  settle();
  TallymoorInternet::Instance().setCachedPrice(u"AAA.AX", Date(2026, 3, 3), 7.25);
  chart.refresh();
  settle();
  EXPECT_DOUBLE_EQ(7.25, chart.chart().model().series.at(0).points.back().value);
}

TEST_F(ChartFrameTest, OtherPortfoliosTakeThePlaceOfTheOldOnes) {
  addCurrentPortfolio();
  auto& capital = place<CapitalChart>(all());
  capital.setPortfolios({});
  EXPECT_EQ(u"Capital, apart from deposits and withdrawals", capital.chart().model().title);
  auto& prices = place<PriceChart>(all());
  prices.show(u"AAA.AX");
  prices.setPortfolios({});
  EXPECT_TRUE(prices.chart().model().markers.empty());
}

} // namespace
} // namespace Tallymoor
