#include "views/ChartModels.h"
#include "analysis/CapitalGrowth.h"
#include "analysis/Indicators.h"
#include "books/SharePortfolioUser.h"
#include "foundation/RunTimeSettings.h"
#include "market/MarketPrices.h"
#include "market/TallymoorInternet.h"
#include "session/BookQuestions.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include "views/PriceLimits.h"
#include "xml/PortfolioRecords.h"
#include <gmock/gmock.h>
#include <memory>
#include <optional>

namespace Tallymoor {
namespace {

const Date TODAY(2026, 3, 3);
const Date FIRST(2025, 1, 1);

/// Portfolios on Tuesday, 3 March 2026, with a simulated exchange behind a web server and without a display.
class ChartModelsTest : public ::testing::Test {
protected:
  ChartModelsTest() {
    m_market.emplace();
    m_gateway.emplace();
  }
  ~ChartModelsTest() override {
    Date::clearFixedDate();
    autoMinMaxPrices = false;
  }

  SharePortfolioUser& addPortfolio(const String& name) {
    m_elements.push_back(std::make_unique<XMLSharePortfolio>());
    m_elements.back()->subElement(u"Name").setValue(name);
    m_users.push_back(std::make_unique<SharePortfolioUser>(*m_elements.back(), gatewayPrices()));
    return *m_users.back();
  }
  Portfolios all() const {
    Portfolios portfolios;
    for (const auto& user : m_users)
      portfolios.push_back(user.get());
    return portfolios;
  }
  MarketFixture& market() { return *m_market; }
  /// Puts the prices into the cache, because drawing fetches nothing.
  static void cache(const String& code, const Date& first, const Date& last = TODAY) {
    TallymoorInternet::Instance().completeHistory({{code, first, last, HistoryNeed::Kind::Backward}},
                                                  nullptr);
  }
  ChartModel prices(const String& code, const Date& from = FIRST, const Date& to = TODAY) {
    return priceChartModel(code, all(), from, to);
  }
  static std::optional<double> valueOn(const ChartModel& model, std::size_t series, const Date& day) {
    for (const ChartPoint& point : model.series.at(series).points)
      if (point.day == day)
        return point.value;
    return std::nullopt;
  }
  static std::vector<std::string> notes(const ChartModel& model) {
    std::vector<std::string> texts;
    for (const ChartMarker& marker : model.markers)
      texts.push_back(marker.day.toString(DATE_DISPLAY_DMY).toUTF8() + (marker.up ? " up " : " down ") +
                      marker.text.toUTF8());
    return texts;
  }
  static std::vector<std::string> seriesNames(const ChartModel& model) {
    std::vector<std::string> names;
    for (const ChartSeries& series : model.series)
      names.push_back(series.name.toUTF8());
    return names;
  }

private:
  TestProfile m_profile{"en_AU", TODAY};
  FakeUserInteraction m_user;
  std::optional<MarketFixture> m_market;
  std::optional<GatewayScope> m_gateway;
  std::vector<std::unique_ptr<XMLSharePortfolio>> m_elements;
  std::vector<std::unique_ptr<SharePortfolioUser>> m_users;
};

TEST_F(ChartModelsTest, CapitalIsShownApartFromFlowsAgainstTheIndex) {
  SharePortfolioUser& user = addPortfolio(u"Trading");
  market().setHistory(u"AAA.AX", Date(2026, 1, 20), Date(2026, 2, 13), 10.0);
  market().setHistory(u"AAA.AX", Date(2026, 2, 16), TODAY, 11.0);
  market().setHistory(u"XJO", Date(2026, 1, 20), Date(2026, 2, 19), 8000.0);
  market().setHistory(u"XJO", Date(2026, 2, 20), TODAY, 8400.0);
  user.creditCash(Date(2026, 2, 2), 1000.0, CASH_EVENT_DEPOSIT, u"DEPOSIT");
  user.buyShares(u"AAA.AX", {Date(2026, 2, 2), 100, 10.0, 0.0, String()});
  user.creditCash(Date(2026, 2, 25), 500.0, CASH_EVENT_DEPOSIT, u"DEPOSIT");
  user.setComparisonIndex(u"XJO");
  updateCapitalRecord(user);
  cache(u"XJO", Date(2026, 2, 1));

  const ChartModel model = capitalChartModel(all(), Date(1, 1, 1), TODAY);
  EXPECT_EQ(u"Capital of Trading, apart from deposits and withdrawals", model.title);
  EXPECT_EQ(ChartUnit::MONEY, model.unit);
  EXPECT_THAT(seriesNames(model), testing::ElementsAre("Capital", "XJO"));
  EXPECT_EQ(ChartStyle::LINE, model.series[0].style);
  EXPECT_EQ(ChartStyle::DASHES, model.series[1].style);
  EXPECT_EQ(Date(2026, 2, 2), model.series[0].points.front().day);
  EXPECT_EQ(TODAY, model.series[0].points.back().day);
  EXPECT_NEAR(1000.0, *valueOn(model, 0, Date(2026, 2, 2)), 1e-9);
  EXPECT_NEAR(1100.0, *valueOn(model, 0, Date(2026, 2, 16)), 1e-9);
  EXPECT_NEAR(1100.0, *valueOn(model, 0, TODAY), 1e-9) << "the deposit is no growth";
  EXPECT_NEAR(1000.0, *valueOn(model, 1, Date(2026, 2, 2)), 1e-9);
  EXPECT_NEAR(1050.0, *valueOn(model, 1, TODAY), 1e-9);
}

TEST_F(ChartModelsTest, TheRangeBeginsWithTheCapitalOfItsFirstDay) {
  SharePortfolioUser& user = addPortfolio(u"Trading");
  user.creditCash(Date(2026, 1, 5), 1000.0, CASH_EVENT_DEPOSIT, u"DEPOSIT");
  user.creditCash(Date(2026, 2, 5), 500.0, CASH_EVENT_DEPOSIT, u"DEPOSIT");
  updateCapitalRecord(user);
  const ChartModel model = capitalChartModel(all(), Date(2026, 2, 10), Date(2026, 2, 20));
  ASSERT_EQ(11u, model.series.at(0).points.size());
  EXPECT_NEAR(1500.0, model.series[0].points.front().value, 1e-9);
  EXPECT_EQ(Date(2026, 2, 20), model.series[0].points.back().day);
}

TEST_F(ChartModelsTest, SeveralPortfoliosAreShownWithoutAnIndex) {
  for (const char16_t* name : {u"One", u"Two"}) {
    SharePortfolioUser& user = addPortfolio(name);
    user.creditCash(Date(2026, 2, 2), 1000.0, CASH_EVENT_DEPOSIT, u"DEPOSIT");
    user.setComparisonIndex(u"XJO");
    updateCapitalRecord(user);
  }
  const ChartModel model = capitalChartModel(all(), Date(1, 1, 1), TODAY);
  EXPECT_EQ(u"Capital, apart from deposits and withdrawals", model.title);
  EXPECT_THAT(seriesNames(model), testing::ElementsAre("Capital"));
  EXPECT_NEAR(2000.0, *valueOn(model, 0, TODAY), 1e-9);
}

TEST_F(ChartModelsTest, WithoutCapitalTheChartSaysSo) {
  EXPECT_EQ(u"No capital to show yet.", capitalChartModel({}, Date(1, 1, 1), TODAY).emptyText);
  addPortfolio(u"New");
  const ChartModel model = capitalChartModel(all(), Date(1, 1, 1), TODAY);
  EXPECT_TRUE(model.series.at(0).points.empty());
}

TEST_F(ChartModelsTest, PricesAreTheCachedClosesOfTradingDays) {
  market().setHistory(u"AAA.AX", Date(2025, 11, 3), TODAY, [](const Date& day) { return 10.0 + day.day(); });
  cache(u"AAA.AX", Date(2026, 2, 2));
  const std::size_t requests = market().requested(MarketFixture::Page::History).size();
  const ChartModel model = prices(u"AAA.AX", Date(2026, 2, 2));
  EXPECT_EQ(u"AAA.AX", model.title);
  EXPECT_EQ(ChartUnit::PRICE, model.unit);
  EXPECT_EQ(u"Price", model.series.at(0).name);
  EXPECT_EQ(22u, model.series[0].points.size()) << "weekdays from 2 February to 3 March";
  EXPECT_DOUBLE_EQ(12.0, *valueOn(model, 0, Date(2026, 2, 2)));
  EXPECT_FALSE(valueOn(model, 0, Date(2026, 2, 7))) << "a Saturday";
  EXPECT_EQ(TODAY, model.series[0].points.back().day);
  prices(u"AAA.AX", Date(2026, 2, 2));
  EXPECT_LE(market().requested(MarketFixture::Page::History).size(), requests + 1)
      << "only the trend's weeks may have been completed, once";
}

TEST_F(ChartModelsTest, AnUnknownStockSaysThereAreNoPrices) {
  const ChartModel model = prices(u"NON.AX");
  EXPECT_TRUE(model.series.at(0).points.empty());
  EXPECT_EQ(
      u"No prices of NON.AX are known in this time. Check the code by searching for the company, try Tools, "
      u"Refresh Prices, or show a longer time.",
      model.emptyText);
  EXPECT_TRUE(model.levels.empty());
}

TEST_F(ChartModelsTest, PurchasesAndSalesAreMarked) {
  market().setHistory(u"AAA.AX", Date(2025, 11, 3), TODAY, 10.0);
  SharePortfolioUser& one = addPortfolio(u"One");
  SharePortfolioUser& two = addPortfolio(u"Two");
  one.buyShares(u"AAA.AX", {Date(2026, 1, 5), 100, 9.0, 5.0, String()});
  one.buyShares(u"AAA.AX", {Date(2026, 1, 12), 50, 9.5, 5.0, String()});
  two.buyShares(u"AAA.AX", {Date(2026, 1, 12), 150, 10.5, 5.0, String()});
  one.sellShares(u"AAA.AX", {Date(2026, 2, 9), 120, 11.0, 5.0, String()}, true);
  cache(u"AAA.AX", Date(2025, 12, 1));
  // 120 shares came from two parcels, and two portfolios bought on the same day.
  EXPECT_THAT(notes(prices(u"AAA.AX")),
              testing::ElementsAre("5/1/2026 up Bought 100.00 at 9.00", "12/1/2026 up Bought 200.00 at 10.25",
                                   "9/2/2026 down Sold 120.00 at 11.00"));
  EXPECT_DOUBLE_EQ(10.25, prices(u"AAA.AX").markers[1].value);
}

TEST_F(ChartModelsTest, TradesOutsideTheRangeAreNotMarked) {
  market().setHistory(u"AAA.AX", Date(2025, 11, 3), TODAY, 10.0);
  SharePortfolioUser& user = addPortfolio(u"One");
  user.buyShares(u"AAA.AX", {Date(2026, 1, 5), 100, 9.0, 5.0, String()});
  user.sellShares(u"AAA.AX", {Date(2026, 2, 9), 100, 11.0, 5.0, String()}, true);
  cache(u"AAA.AX", Date(2025, 12, 1));
  EXPECT_THAT(notes(prices(u"AAA.AX", Date(2026, 1, 6), Date(2026, 2, 8))), testing::IsEmpty());
  EXPECT_THAT(notes(prices(u"AAA.AX", Date(2026, 1, 5), Date(2026, 2, 8))),
              testing::ElementsAre("5/1/2026 up Bought 100.00 at 9.00"));
}

TEST_F(ChartModelsTest, PricesBeforeASplitAreAsOfTheLastDay) {
  market().setHistory(u"AAA.AX", Date(2025, 11, 3), Date(2026, 2, 13), 10.0);
  market().setHistory(u"AAA.AX", Date(2026, 2, 16), TODAY, 5.5);
  SharePortfolioUser& user = addPortfolio(u"One");
  user.buyShares(u"AAA.AX", {Date(2026, 1, 5), 100, 9.0, 5.0, String()});
  user.sellShares(u"AAA.AX", {Date(2026, 1, 20), 40, 10.0, 5.0, String()}, true);
  user.recordAdjustment(u"AAA.AX", Date(2026, 2, 16), 2, false);
  cache(u"AAA.AX", Date(2025, 12, 1));
  const ChartModel model = prices(u"AAA.AX");
  EXPECT_DOUBLE_EQ(5.0, *valueOn(model, 0, Date(2026, 2, 13)));
  EXPECT_DOUBLE_EQ(5.5, *valueOn(model, 0, Date(2026, 2, 16)));
  EXPECT_THAT(notes(model),
              testing::ElementsAre("5/1/2026 up Bought 200.00 at 4.50", "20/1/2026 down Sold 80.00 at 5.00"));
  EXPECT_THAT(seriesNames(model), testing::ElementsAre("Price")) << "the trend's weeks are not adjusted";

  const ChartModel before = prices(u"AAA.AX", FIRST, Date(2026, 2, 13));
  EXPECT_DOUBLE_EQ(10.0, *valueOn(before, 0, Date(2026, 2, 13))) << "as it was on that day";
  EXPECT_THAT(notes(before), testing::ElementsAre("5/1/2026 up Bought 100.00 at 9.00",
                                                  "20/1/2026 down Sold 40.00 at 10.00"));
}

TEST_F(ChartModelsTest, SalesOfSplitSharesAreMarkedAsTheyWereSold) {
  market().setHistory(u"AAA.AX", Date(2025, 11, 3), Date(2026, 1, 16), 9.0);
  market().setHistory(u"AAA.AX", Date(2026, 1, 19), TODAY, 3.0);
  SharePortfolioUser& user = addPortfolio(u"One");
  user.buyShares(u"AAA.AX", {Date(2026, 1, 5), 100, 9.0, 5.0, String()});
  user.recordAdjustment(u"AAA.AX", Date(2026, 1, 19), 3, false);
  user.sellShares(u"AAA.AX", {Date(2026, 1, 19), 50, 3.2, 5.0, String()}, true);
  user.sellShares(u"AAA.AX", {Date(2026, 2, 2), 250, 3.5, 5.0, String()}, true);
  cache(u"AAA.AX", Date(2025, 12, 1));
  const ChartModel model = prices(u"AAA.AX");
  EXPECT_DOUBLE_EQ(3.0, *valueOn(model, 0, Date(2026, 1, 16))) << "the split is known after the sale of all";
  EXPECT_THAT(notes(model),
              testing::ElementsAre("5/1/2026 up Bought 300.00 at 3.00", "19/1/2026 down Sold 50.00 at 3.20",
                                   "2/2/2026 down Sold 250.00 at 3.50"));
}

TEST_F(ChartModelsTest, PricesBeforeAMergeAreAsOfTheLastDay) {
  market().setHistory(u"AAA.AX", Date(2025, 11, 3), Date(2026, 2, 13), 1.0);
  market().setHistory(u"AAA.AX", Date(2026, 2, 16), TODAY, 5.0);
  SharePortfolioUser& user = addPortfolio(u"One");
  user.buyShares(u"AAA.AX", {Date(2026, 1, 5), 1000, 0.9, 5.0, String()});
  user.recordAdjustment(u"AAA.AX", Date(2026, 2, 16), 5, true);
  cache(u"AAA.AX", Date(2025, 12, 1));
  const ChartModel model = prices(u"AAA.AX");
  EXPECT_DOUBLE_EQ(5.0, *valueOn(model, 0, Date(2026, 2, 13)));
  EXPECT_THAT(notes(model), testing::ElementsAre("5/1/2026 up Bought 200.00 at 4.50"));
}

TEST_F(ChartModelsTest, ClosesThatTheSourceHasAdjustedAreLeftAlone) {
  market().setHistory(u"AAA.AX", Date(2025, 11, 3), Date(2026, 2, 13), 5.2);
  market().setHistory(u"AAA.AX", Date(2026, 2, 16), TODAY, 5.5);
  SharePortfolioUser& user = addPortfolio(u"One");
  user.buyShares(u"AAA.AX", {Date(2026, 1, 5), 100, 10.0, 5.0, String()});
  user.recordAdjustment(u"AAA.AX", Date(2026, 2, 16), 2, false);
  cache(u"AAA.AX", Date(2025, 12, 1));
  const ChartModel model = prices(u"AAA.AX");
  EXPECT_DOUBLE_EQ(5.2, *valueOn(model, 0, Date(2026, 2, 13)));
  EXPECT_THAT(notes(model), testing::ElementsAre("5/1/2026 up Bought 200.00 at 5.00"));
}

TEST_F(ChartModelsTest, ADaysJumpThatWasNoSplitChangesNothing) {
  market().setHistory(u"AAA.AX", Date(2025, 11, 3), Date(2026, 2, 13), 10.0);
  market().setHistory(u"AAA.AX", Date(2026, 2, 16), TODAY, 4.0);
  SharePortfolioUser& user = addPortfolio(u"One");
  user.buyShares(u"AAA.AX", {Date(2026, 1, 5), 100, 10.0, 5.0, String()});
  user.recordAdjustment(u"AAA.AX", Date(2026, 2, 16), 1, false);
  cache(u"AAA.AX", Date(2025, 12, 1));
  EXPECT_DOUBLE_EQ(10.0, *valueOn(prices(u"AAA.AX"), 0, Date(2026, 2, 13)));
}

TEST_F(ChartModelsTest, TheTrendIsDrawnFromItsFirstWeekOrTheRangesFirstDay) {
  market().setHistory(u"AAA.AX", Date(2025, 3, 3), TODAY,
                      [](const Date& day) { return 10.0 + 0.01 * day.daysSince(Date(2025, 3, 3)); });
  cache(u"AAA.AX", Date(2025, 3, 3));
  const std::optional<TrendLine> line = trendLineOf(u"AAA.AX", TODAY);
  ASSERT_TRUE(line);
  const ChartModel model = prices(u"AAA.AX");
  ASSERT_THAT(seriesNames(model), testing::ElementsAre("Price", "LR"));
  const ChartSeries& trend = model.series[1];
  EXPECT_TRUE(trend.straight);
  EXPECT_EQ(ChartStyle::DOTS, trend.style);
  EXPECT_EQ(line->from, trend.points.front().day);
  EXPECT_NEAR(line->fromValue, trend.points.front().value, 1e-9);
  EXPECT_EQ(TODAY, trend.points.back().day);
  EXPECT_NEAR(line->toValue, trend.points.back().value, 1e-9);
  const ChartModel later = prices(u"AAA.AX", Date(2026, 2, 2));
  EXPECT_EQ(Date(2026, 2, 2), later.series.at(1).points.front().day);
  EXPECT_NEAR(10.0 + 0.01 * Date(2026, 2, 2).daysSince(Date(2025, 3, 3)),
              later.series[1].points.front().value, 1e-6);
}

TEST_F(ChartModelsTest, TheLimitsOfAHoldingAreDrawn) {
  market().setHistory(u"AAA.AX", Date(2025, 11, 3), TODAY, 10.0);
  addPortfolio(u"Empty");
  SharePortfolioUser& user = addPortfolio(u"One");
  user.buyShares(u"AAA.AX", {Date(2026, 1, 5), 100, 9.0, 5.0, String()});
  cache(u"AAA.AX", Date(2025, 12, 1));
  EXPECT_TRUE(prices(u"AAA.AX").levels.empty());
  user.setMinMax(*user.findHeldShare(u"AAA.AX"), 8.0, 12.0);
  const ChartModel model = prices(u"AAA.AX");
  ASSERT_EQ(2u, model.levels.size());
  EXPECT_EQ(u"Min", model.levels[0].name);
  EXPECT_DOUBLE_EQ(8.0, model.levels[0].value);
  EXPECT_EQ(u"Max", model.levels[1].name);
  EXPECT_DOUBLE_EQ(12.0, model.levels[1].value);
  user.setMinMax(*user.findHeldShare(u"AAA.AX"), 0.0, 12.0);
  EXPECT_EQ(1u, prices(u"AAA.AX").levels.size()) << "zero is no limit";
}

TEST_F(ChartModelsTest, TheLimitsOfAWatchedStockAreDrawn) {
  market().setHistory(u"AAA.AX", Date(2025, 11, 3), TODAY, 10.0);
  cache(u"AAA.AX", Date(2025, 12, 1));
  PriceLimits{7.5, 14.25}.keepForStock(u"AAA.AX");
  const ChartModel model = prices(u"AAA.AX");
  ASSERT_EQ(2u, model.levels.size());
  EXPECT_DOUBLE_EQ(7.5, model.levels[0].value);
  EXPECT_DOUBLE_EQ(14.25, model.levels[1].value);
}

TEST_F(ChartModelsTest, TheAutomaticLimitsTakeTheirPlaceWhileTheyAreChosen) {
  market().setHistory(u"AAA.AX", Date(2025, 3, 3), TODAY, 10.0);
  cache(u"AAA.AX", Date(2025, 3, 3));
  PriceLimits{7.5, 0.0}.keepForStock(u"AAA.AX");
  autoMinMaxPrices = true;
  const Indicators indicators = indicatorsOf(u"AAA.AX", TODAY);
  const ChartModel model = prices(u"AAA.AX");
  ASSERT_EQ(2u, model.levels.size());
  EXPECT_DOUBLE_EQ(indicators.autoMin.value(), model.levels[0].value);
  EXPECT_DOUBLE_EQ(indicators.autoMax.value(), model.levels[1].value);
}

} // namespace
} // namespace Tallymoor
