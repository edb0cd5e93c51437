#include "WatchlistsTest.h"
#include "views/CapitalChart.h"
#include "views/ChartFrame.h"
#include "views/IndexFigures.h"
#include "views/PerformanceView.h"
#include "views/PortfolioPerformanceTable.h"
#include "widgets/ChartView.h"
#include "widgets/HandlerScope.h"
#include "widgets/PacedWakeUp.h"

using namespace Tallymoor;

namespace {

/// A page is made when it is first wanted. What the rest of the program expects of a page that nobody has
/// looked at is there all the same.
class UnseenPagesTest : public WatchlistsTest {
protected:
  /// Two portfolios with 40 stocks each, and two lists; the root's page and that of the first list are shown.
  void showMany() {
    for (const char16_t* name : {u"Other", u"Trading"}) {
      SharePortfolioUser& user = addPortfolio(name, 5000.0);
      for (int stock = 10; stock < 50; ++stock)
        buy(user, u"S" + String::fromLong(stock) + u".AX", 1.0, 2.0);
    }
    addList(u"Main", {u"S10.AX"});
    showTrees();
  }
  static int madePages(TreeViewItem* item) {
    int made = 0;
    for (; item; item = item->nextSibling()) {
      made += static_cast<InvestmentTreeItem*>(item)->madePage() ? 1 : 0;
      made += madePages(item->firstChild());
    }
    return made;
  }
  int madePages() { return madePages(tree().firstRoot()) + madePages(lists().tree()->firstRoot()); }
  static bool isWatched(const String& code) {
    return TallymoorInternet::Instance().priceUpdater().hasCode(code);
  }
  static const Table* tableIn(const FXWindow* window) {
    for (const FXWindow* child = window->getFirst(); child; child = child->getNext()) {
      const auto* table = dynamic_cast<const Table*>(child);
      if (table || (table = tableIn(child)))
        return table;
    }
    return nullptr;
  }
  /// Rows of the table of all shares of "Trading" as it is: table() would fill it.
  std::size_t madeRows() { return tableIn(held(u"Trading").madePage())->numRows(); }
  void priceComes(const String& code, double price) {
    market().setCurrentPrice(code, price);
    runPass();
  }
  void limits(const String& portfolio, const String& code, double min, double max) {
    portfolios()[portfolio]->setMinMax(*portfolios()[portfolio]->findHeldShare(code), min, max);
  }
};

TEST_F(UnseenPagesTest, AtTheStartOnlyThePagesInSightAreMade) {
  showMany();
  EXPECT_EQ(40, static_cast<int>(childLabels(held(u"Trading")).size()));
  EXPECT_EQ(2, madePages()) << "total capital, and the first list";
}

TEST_F(UnseenPagesTest, ATransactionAPriceAndTheViewDateMakeNone) {
  showMany();
  {
    const HandlerScope scope;
    node(u"Trading").transactionMade();
    node(u"Trading").portfolio().creditCash(Date(2026, 3, 3), 300.0, CASH_EVENT_DEPOSIT, u"DEPOSIT salary");
  }
  letEventsPass();
  priceComes(u"S10.AX", 2.5);
  viewDate(Date(2026, 2, 27));
  Date::clearFixedDate();
  tree().updateItems();
  lists().tree()->updateItems();
  settle();
  EXPECT_EQ(2, madePages());
  EXPECT_EQ("$10,301.00", figure(root(), "Total Capital")); // 300.00, and 50 cents in each portfolio
}

TEST_F(UnseenPagesTest, APageIsMadeWhenItIsOpenedAndStays) {
  showMany();
  leftClick(cash());
  EXPECT_EQ(3, madePages());
  FXVerticalFrame* const page = cash().madePage();
  EXPECT_TRUE(page->shown());
  EXPECT_EQ("$5,000.00", cellText(*cash().table(), 0, u"Credits"));
  leftClick(root());
  EXPECT_EQ(page, cash().madePage());
  leftClick(cash());
  EXPECT_EQ(page, cash().madePage());
}

TEST_F(UnseenPagesTest, OpeningAPageFillsItsTableOnce) {
  addTrading();
  showTrees();
  leftClick(cash());
  EXPECT_FALSE(cash().table()->hasChangedRecords());
  EXPECT_THAT(cash().table()->rows(), testing::SizeIs(numCashEntries()));
}

TEST_F(UnseenPagesTest, APageThatCannotBeMadeIsToldAndLeavesTheOneInSight) {
  addTrading();
  showTrees();
  cashEntry(1).subElement(u"Value").setValue(u"1.00");
  cashEntry(1).subElement(u"Date").setValue(u"no date"); // behind the program's back
  answer("This portfolio has suffered an error. Please restart Tallymoor.", "OK");
  clickNode(cash(), SEL_LEFTBUTTONPRESS, SEL_LEFTBUTTONRELEASE, LEFTBUTTON);
  EXPECT_EQ(nullptr, cash().madePage());
  EXPECT_EQ(nullptr, cash().table());
  EXPECT_FALSE(cash().isSound());
  EXPECT_EQ(&root(), tree().shownItem());
  EXPECT_TRUE(root().madePage()->shown());
}

// ---- Prices and limits ----

TEST_F(UnseenPagesTest, HeldAndWatchedStocksArePricedAndGivenUp) {
  addTrading();
  addList(u"Main", {u"BBB.AX"});
  showTrees();
  ASSERT_EQ(nullptr, held(u"Trading").madePage());
  ASSERT_EQ(nullptr, list().madePage());
  EXPECT_TRUE(isWatched(u"AAA.AX"));
  EXPECT_TRUE(isWatched(u"BBB.AX"));
  leftClick(list());
  EXPECT_TRUE(isWatched(u"BBB.AX"));
  leftClick(heldList());
  {
    const HandlerScope scope;
    node(u"Trading").transactionMade();
    node(u"Trading").portfolio().removeHeldShare(u"AAA.AX");
  }
  letEventsPass();
  EXPECT_EQ(nullptr, held(u"Trading").madePage());
  leftClick(heldList());
  EXPECT_FALSE(isWatched(u"AAA.AX"));
}

TEST_F(UnseenPagesTest, APriceThatCameBeforeThePageWasOpenedIsNotForgotten) {
  addTrading();
  showTrees();
  priceComes(u"AAA.AX", 7.3);
  leftClick(held(u"Trading"));
  EXPECT_DOUBLE_EQ(7.3, TallymoorInternet::Instance().priceUpdater().getCurrentPrice(u"AAA.AX"));
  EXPECT_EQ("7.30", cellText(*held(u"Trading").table(), 0, u"Price Now"));
}

TEST_F(UnseenPagesTest, AHeldStockThatLeavesItsLimitsWarns) {
  addTrading();
  limits(u"Trading", u"AAA.AX", 6.0, 0.0);
  showTrees(); // 6.60
  EXPECT_TRUE(window().warnings.empty());
  priceComes(u"AAA.AX", 5.9);
  ASSERT_FALSE(window().warnings.empty());
  EXPECT_EQ(String(u"AAA.AX has dropped below $6.00 and is now at $5.90"), window().warnings.back().text);
  window().warningsOver.clear();
  priceComes(u"AAA.AX", 6.1);
  EXPECT_TRUE(window().warningsOver.contains(u"AAA.AXmin warning"));
  EXPECT_EQ(nullptr, held(u"Trading").madePage());
}

TEST_F(UnseenPagesTest, APageLeftWarnsOfLimitsAndIsFilledWhenItIsOpenedAgain) {
  addTrading();
  showTrees();
  leftClick(held(u"Trading"));
  leftClick(node(u"Trading"));
  const std::size_t rowsBefore = madeRows();
  {
    const HandlerScope scope;
    buy(node(u"Trading").portfolio(), u"BBB.AX", 10.0, 2.0);
    limits(u"Trading", u"BBB.AX", 1.5, 0.0);
    node(u"Trading").transactionMade();
  }
  letEventsPass();
  EXPECT_EQ(rowsBefore, madeRows()) << "out of sight";
  EXPECT_TRUE(isWatched(u"BBB.AX"));
  EXPECT_TRUE(window().warnings.empty());
  priceComes(u"BBB.AX", 1.4);
  EXPECT_EQ(rowsBefore, madeRows()) << "nor by a price";
  ASSERT_FALSE(window().warnings.empty());
  EXPECT_EQ(u"BBB.AXmin warning", window().warnings.back().key);
  leftClick(held(u"Trading"));
  EXPECT_EQ(rowsBefore + 1, madeRows());
  EXPECT_EQ("1.40", cellText(*held(u"Trading").table(), 1, u"Price Now"));
}

TEST_F(UnseenPagesTest, AWatchedStockThatLeavesItsLimitsWarns) {
  watchOne(); // 6.60
  Settings::Instance().writeReal(u"Watchlists", u"minvalue - AAA.AX", 7.0);
  showTrees();
  ASSERT_FALSE(window().warnings.empty());
  EXPECT_EQ(String(u"AAA.AX has dropped below $7.00 and is now at $6.60"), window().warnings.back().text);
  EXPECT_EQ(nullptr, list().madePage());
}

TEST_F(UnseenPagesTest, AutomaticLimitsWarnWhenTheyAreChosen) {
  market().setHistory(u"UP.AX", Date(2025, 1, 6), Date(2026, 3, 2),
                      [](const Date& day) { return 10.0 + 0.02 * day.daysSince(Date(2026, 3, 3)); });
  market().setDay(u"UP.AX", Date(2026, 3, 3), 7.4);
  addPortfolio(u"Trading", 5000.0).buyShares(u"UP.AX", {Date(2026, 2, 2), 100, 9.42, 0.0, String()});
  showTrees();
  TallymoorInternet::Instance().completeHistory(
      {{u"UP.AX", Date(2025, 1, 6), Date(2026, 3, 3), HistoryNeed::Kind::Backward}}, nullptr);
  EXPECT_TRUE(window().warnings.empty());
  autoMinMaxPrices = true;
  tree().updateItems();
  ASSERT_FALSE(window().warnings.empty());
  EXPECT_EQ(String(u"UP.AX has dropped below $7.84 and is now at $7.40"), window().warnings.back().text);
  EXPECT_EQ(nullptr, held(u"Trading").madePage());
}

TEST_F(UnseenPagesTest, LimitsThatAreTypedElsewhereWarnAtOnce) {
  addTrading();
  addList(u"Main", {u"AAA.AX"});
  showTrees();
  typeInto(table(), 0, u"Price Min/Max", "7 - 9");
  ASSERT_FALSE(window().warnings.empty());
  EXPECT_EQ(String(u"AAA.AXmin warning"), window().warnings.back().key);
  EXPECT_EQ(nullptr, held(u"Trading").madePage());
  EXPECT_EQ("$7.00 - $9.00", cellText(*held(u"Trading").table(), 0, u"Price Min/Max"));
}

TEST_F(UnseenPagesTest, PricesOfAViewDateDoNotWarn) {
  addTrading();
  limits(u"Trading", u"AAA.AX", 6.5, 0.0);
  showTrees();
  viewDateOfBoth(Date(2026, 2, 27)); // 5.50
  EXPECT_TRUE(window().warnings.empty());
  EXPECT_TRUE(isWatched(u"AAA.AX"));
}

TEST_F(UnseenPagesTest, TheIndexIsPricedAndItsGainKnown) {
  SharePortfolioUser& user = addTrading();
  market().setHistory(u"XJO", Date(2025, 1, 6), Date(2026, 3, 2), 100.0);
  market().setDay(u"XJO", Date(2026, 3, 3), 101.0);
  user.setComparisonIndex(u"XJO");
  showTrees();
  EXPECT_TRUE(isWatched(u"XJO"));
  EXPECT_EQ(String(u"1.00%"), node(u"Trading").indexFigures().gainToday());
  priceComes(u"XJO", 102.0);
  EXPECT_EQ(String(u"2.00%"), node(u"Trading").indexFigures().gainToday());
  EXPECT_EQ(nullptr, node(u"Trading").madePage());
}

// ---- Redraws ----

TEST_F(UnseenPagesTest, HundredsOfPricesRedrawTheChartOnceAndOnceMoreAtTheEnd) {
  addTrading();
  showTrees();
  leftClick(node(u"Trading"));
  ChartView& chart = node(u"Trading").performance()->chart().chart();
  int drawn = 0;
  chart.setSource([&] {
    ++drawn;
    return ChartModel();
  });
  letEventsPass();
  drawn = 0;
  PacedWakeUp::setRest(3600 * 1000);
  SharePortfolioUser& user = node(u"Trading").portfolio();
  PortfolioPerformanceTable& table = node(u"Trading").performance()->table();
  for (int price = 0; price < 300; ++price) {
    {
      const BigMutexLock lock;
      user.capitalRecord().currentPriceUpdated(u"AAA.AX", 7.0 + 0.01 * price);
      table.currentPriceUpdated(u"AAA.AX", 7.0 + 0.01 * price);
    }
    letEventsPass();
  }
  EXPECT_EQ(1, drawn);
  EXPECT_EQ("$5,400.00", figure(node(u"Trading"), "Total Capital")) << "of the first price, 7.00";
  PacedWakeUp::setRest(0);
  table.updateTable();
  letEventsPass();
  EXPECT_EQ(2, drawn);
  EXPECT_EQ("$6,147.50", figure(node(u"Trading"), "Total Capital")) << "of the last one, 9.99";
}

} // namespace
