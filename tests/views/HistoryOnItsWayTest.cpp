#include "WatchlistsTest.h"
#include "views/HeldShareCells.h"
#include "views/PerformanceView.h"
#include "views/PortfolioPerformanceTable.h"
#include "views/WatchlistChart.h"
#include "widgets/ChartView.h"

using namespace Tallymoor;
using testing::Contains;
using testing::Each;
using testing::IsEmpty;
using testing::Not;

namespace {

/// Past prices that don't come for a while: the source takes requests and does not answer, so whatever waits
/// for a price would wait for ever.
class HistoryOnItsWayTest : public WatchlistsTest {
protected:
  using Page = MarketFixture::Page;

  bool awaitBackgroundWork() override { return !m_stalled && WatchlistsTest::awaitBackgroundWork(); }
  void stall() {
    market().stall(Page::History);
    m_stalled = true;
  }
  void letThemCome() {
    market().release(Page::History);
    m_stalled = false;
    letEventsPass();
  }
  static HistoryFetcher& fetcher() { return TallymoorInternet::Instance().historyFetcher(); }
  /// Forgets the prices of a portfolio that is up to date.
  void forgetPrices() {
    TallymoorInternet::Instance().clear();
    stall();
  }

private:
  bool m_stalled = false;
};

TEST_F(HistoryOnItsWayTest, AWatchlistIsShownAtOnceAndFilledInWhenThePricesCome) {
  watchOne();
  market().setHistory(u"BBB.AX", Date(2024, 12, 1), Date(2026, 3, 3), 4.0);
  WatchlistSettings::addCode(u"Main", u"BBB.AX");
  stall();
  showTrees();
  leftClick(list());
  market().awaitRequests(Page::History, 2);
  ASSERT_EQ(2, table().getNumRows());
  for (FXint row : {0, 1}) {
    EXPECT_EQ("...", cellText(table(), row, u"Price Now"));
    EXPECT_EQ("...", cellText(table(), row, u"12 Months %"));
    EXPECT_EQ("...", cellText(table(), row, u"LR Value"));
    EXPECT_EQ("...", cellText(table(), row, u"% in Min/Max"));
    EXPECT_EQ("", cellText(table(), row, u"Price Min/Max"));
  }
  EXPECT_TRUE(window().warnings.empty());
  letThemCome();
  EXPECT_EQ("6.60", cellText(table(), 0, u"Price Now"));
  EXPECT_EQ("10.00%", cellText(table(), 0, u"12 Months %"));
  EXPECT_EQ("4.00", cellText(table(), 1, u"LR Value"));
  for (FXint row : {0, 1})
    EXPECT_THAT(rowTexts(table(), row), Not(Contains("...")));
  EXPECT_THAT(boxes(), IsEmpty());
}

TEST_F(HistoryOnItsWayTest, GoingOfflineEndsTheFetchesAtOnce) {
  watchOne();
  stall();
  showTrees();
  leftClick(list());
  market().awaitRequests(Page::History, 1);
  EXPECT_EQ("...", cellText(table(), 0, u"Price Now"));
  {
    const BigMutexLock handler;
    TallymoorInternet::Instance().goOffline();
  }
  EXPECT_FALSE(fetcher().isRunning());
  letEventsPass();
  EXPECT_THAT(rowTexts(table(), 0), Each("")) << "nothing is on its way any more";
  EXPECT_THAT(boxes(), IsEmpty());
}

TEST_F(HistoryOnItsWayTest, AViewDateEndsThemAndItsOwnDaysAreFetched) {
  watchOne();
  stall();
  showTrees();
  leftClick(list());
  market().awaitRequests(Page::History, 1);
  {
    const BigMutexLock handler;
    TallymoorInternet::Instance().pauseUpdates();
  }
  EXPECT_FALSE(fetcher().isRunning());
  letThemCome();
  viewDateOfBoth(Date(2026, 2, 27));
  EXPECT_EQ("6.00", cellText(table(), 0, u"Price Now"));
}

TEST_F(HistoryOnItsWayTest, SharesHeldAndTheirTotalsSayThatAPriceIsOnItsWay) {
  addTrading();
  showTrees();
  leftClick(held(u"Trading"));
  const auto shown = [this] { return cellText(*held(u"Trading").table(), 0, u"Price Now"); };
  const auto worth = [this] { return total(held(u"Trading"), &HeldShareCells::currentValue); };
  const auto today = [this] { return total(held(u"Trading"), &HeldShareCells::dayPercent); };
  EXPECT_EQ("6.60", shown());
  EXPECT_EQ("$1,650.00", worth());
  EXPECT_EQ("10.00%", today());
  forgetPrices();
  held(u"Trading").table()->updateTable();
  letEventsPass();
  EXPECT_EQ("...", shown());
  EXPECT_EQ("...", worth());
  EXPECT_EQ("...", today());
  EXPECT_NE("...", total(held(u"Trading"), &HeldShareCells::purchaseValue)) << "it needs no price";
  letThemCome();
  EXPECT_EQ("6.60", shown());
  EXPECT_EQ("$1,650.00", worth());
  EXPECT_EQ("10.00%", today());
}

TEST_F(HistoryOnItsWayTest, TheIndexIsFilledInBesideThePortfolio) {
  market().setHistory(u"^IDX", Date(2024, 11, 4), Date(2026, 2, 27), 4000.0);
  market().setDay(u"^IDX", Date(2026, 3, 2), 4100.0);
  market().setDay(u"^IDX", Date(2026, 3, 3), 4182.0);
  SharePortfolioUser& portfolio = addTrading();
  showTree();
  portfolio.setComparisonIndex(u"^IDX");
  stall();
  leftClick(node(u"Trading"));
  node(u"Trading").update();
  letEventsPass();
  PortfolioPerformanceTable& table = node(u"Trading").performance()->table();
  EXPECT_EQ("2.91% (...)", figure(node(u"Trading"), "Gain today (index)"));
  EXPECT_TRUE(shows(*node(u"Trading").page(), "..."));
  EXPECT_EQ("...", cellText(table, 0, u"Index"));
  EXPECT_EQ("...", cellText(table, 0, u"1 Month Index"));
  letThemCome();
  EXPECT_EQ("2.91% (2.00%)", figure(node(u"Trading"), "Gain today (index)"));
  EXPECT_EQ("4182.00", cellText(table, 0, u"Index"));
  EXPECT_EQ("4.55%", cellText(table, 0, u"1 Month Index"));
  EXPECT_FALSE(shows(*node(u"Trading").page(), "..."));
}

TEST_F(HistoryOnItsWayTest, AChartIsDrawnWhenItsPricesCome) {
  watchOne();
  stall();
  showTrees();
  leftClick(list());
  market().awaitRequests(Page::History, 1);
  ChartView& chart = list().chart()->chart();
  EXPECT_EQ(u"The prices of AAA.AX are being fetched.", chart.model().emptyText);
  EXPECT_THAT(chart.model().series.at(0).points, IsEmpty());
  letThemCome();
  EXPECT_EQ(6.6, chart.model().series.at(0).points.back().value);
}

} // namespace
