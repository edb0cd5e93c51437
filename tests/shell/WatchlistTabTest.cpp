#include "ShellTest.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "views/WatchlistSettings.h"
#include "widgets/Colours.h"
#include "widgets/GuiWakeUp.h"
#include "widgets/InvestmentTree.h"
#include "widgets/InvestmentTreeItem.h"
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;

class WatchlistTabTest : public ShellTest {
protected:
  WatchlistTabTest() {
    market().setHistory(u"AAA.AX", Date(2024, 12, 1), Date(2026, 3, 2), 6.0);
    market().setDay(u"AAA.AX", Date(2026, 3, 3), 6.6);
  }

  void makePortfolio() {
    whenName("New Portfolio", "Trading");
    command(TallymoorWindow::ID_NEW_PORTFOLIO);
  }
  void whenName(const std::string& form, const std::string& name) {
    whenModal(form, [this, name](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), name);
      press(dialog, "OK");
    });
  }
  std::vector<std::string> lists() {
    std::vector<std::string> names;
    for (TreeViewItem* item = tallymoor().watchlistTree()->firstRoot(); item; item = item->nextSibling())
      names.push_back(item->label().toUTF8());
    return names;
  }
  std::vector<std::string> tabs() {
    std::vector<std::string> names;
    for (const FXTabItem* tab : findAll<FXTabItem>(*tallymoor().tabBook()))
      names.emplace_back(tab->getText().text());
    return names;
  }
  /// The splitter around the tree. The pages may contain others.
  FXSplitter& splitter() {
    return dynamic_cast<FXSplitter&>(*tallymoor().watchlistTree()->getParent()->getParent());
  }
  void showTab(FXint tab) {
    tallymoor().tabBook()->setCurrent(tab, TRUE);
    letEventsPass();
  }
};

TEST_F(WatchlistTabTest, StandsBesideThatOfThePortfolios) {
  EXPECT_THAT(tabs(), ElementsAre("  Portfolios  ", "  Watchlists  "));
  EXPECT_EQ(makeColour(70, 130, 180, 100), tallymoor().watchlistTree()->backColour());
  EXPECT_EQ(150, splitter().getSplit(0));
  EXPECT_EQ(0, tallymoor().tabBook()->getCurrent());
}

TEST_F(WatchlistTabTest, ANewListIsShownInItsTab) {
  whenName("Add New Watchlist", "Miners");
  press(tallymoor(), "New Watchlist");
  EXPECT_THAT(lists(), ElementsAre("Miners"));
  EXPECT_EQ(1, tallymoor().tabBook()->getCurrent());
  ASSERT_NE(nullptr, tallymoor().watchlistTree()->shownItem());
  EXPECT_EQ("Miners", tallymoor().watchlistTree()->shownItem()->label().toUTF8());
}

TEST_F(WatchlistTabTest, ANewPortfolioBringsItsOwnTabBack) {
  showTab(1);
  makePortfolio();
  EXPECT_EQ(0, tallymoor().tabBook()->getCurrent());
}

TEST_F(WatchlistTabTest, ThePortfoliosListFollowsPurchasesWhenTheTabIsShown) {
  makePortfolio();
  SharePortfolioUser& trading = *tallymoor().store().portfolios().at(u"Trading");
  trading.creditCash(Date(2026, 2, 1), 5000.0, 4, u"DEPOSIT start");
  trading.buyShares(u"AAA.AX", {Date(2026, 2, 2), 100, 6.0, 0.0, String()});
  tallymoor().totalCapital()->portfolioNode(u"Trading")->transactionMade();
  showTab(1);
  EXPECT_THAT(lists(), ElementsAre("for Trading"));
  Table* table = find<Table>(*tallymoor().watchlistTree()->shownItem()->page());
  ASSERT_NE(nullptr, table);
  EXPECT_TRUE(table->hasRow(u"AAA.AX"));
}

TEST_F(WatchlistTabTest, ViewDateIsThatOfBothTrees) {
  makePortfolio();
  SharePortfolioUser& trading = *tallymoor().store().portfolios().at(u"Trading");
  trading.creditCash(Date(2026, 2, 1), 5000.0, 4, u"DEPOSIT start");
  trading.buyShares(u"AAA.AX", {Date(2026, 2, 2), 100, 6.0, 0.0, String()});
  tallymoor().refreshViews(true);
  pickViewDate(Date(2026, 1, 30));
  const auto holds = [this] {
    return find<Table>(*tallymoor().watchlistTree()->shownItem()->page())->hasRow(u"AAA.AX");
  };
  EXPECT_FALSE(holds());
  pickViewDate(Date(2026, 2, 2));
  EXPECT_TRUE(holds());
}

TEST_F(WatchlistTabTest, SaveWritesItsSplitterWidth) {
  splitter().setSplit(0, 177);
  command(TallymoorWindow::ID_SAVE);
  EXPECT_EQ(177u, Settings::Instance().readUnsigned(u"Gui Settings", u"X Splitter Watchlists"));
  EXPECT_EQ(150u, Settings::Instance().readUnsigned(u"Gui Settings", u"X Splitter Portfolios"));
}

class SavedSplitterTest : public WatchlistTabTest {
protected:
  SavedSplitterTest() { Settings::Instance().writeUnsigned(u"Gui Settings", u"X Splitter Watchlists", 222); }
};

TEST_F(SavedSplitterTest, WidthIsThatOfTheLastSave) {
  EXPECT_EQ(222, splitter().getSplit(0));
}

class SavedListsTest : public WatchlistTabTest {
protected:
  SavedListsTest() {
    WatchlistSettings::add(u"Miners");
    WatchlistSettings::addCode(u"Miners", u"AAA.AX");
  }
};

TEST_F(SavedListsTest, StandInTheTreeFromTheStartOnAndGoBeforeThePortfoliosDo) {
  EXPECT_THAT(lists(), ElementsAre("Miners"));
  leave();
  EXPECT_EQ(nullptr, tallymoor().watchlistTree()->firstRoot());
}

TEST_F(SavedListsTest, ThePageOfTheFirstOneIsMadeWhenTheirTabIsOpened) {
  EXPECT_EQ(nullptr, tallymoor().watchlistTree()->shownItem());
  showTab(1);
  ASSERT_NE(nullptr, tallymoor().watchlistTree()->shownItem());
  EXPECT_EQ("Miners", tallymoor().watchlistTree()->shownItem()->label().toUTF8());
  EXPECT_TRUE(find<Table>(*tallymoor().watchlistTree()->shownItem()->page())->hasRow(u"AAA.AX"));
}

TEST_F(SavedListsTest, AreShownAlsoWhenANewOneIsGivenUp) {
  whenModal("Add New Watchlist", [this](FXWindow& dialog) { press(dialog, "Cancel"); });
  press(tallymoor(), "New Watchlist");
  EXPECT_EQ(1, tallymoor().tabBook()->getCurrent());
  ASSERT_NE(nullptr, tallymoor().watchlistTree()->shownItem());
}

class WatchlistAfterAFailedStartTest : public WatchlistTabTest {
protected:
  WatchlistAfterAFailedStartTest() {
    TestProfile::writeFile(profile().configFolder() + u"CodeSearchLocators.xml",
                           "<CodeSearchLocators active=\"gone\" version=\"1\"/>");
    whenModal("TallymoorInternet::TallymoorInternet - failed to find a code search locator",
              [this](FXWindow& box) { press(box, "OK"); });
  }
  bool opensWizard() override { return false; }
};

TEST_F(WatchlistAfterAFailedStartTest, ANewListSaysWhatIsMissing) {
  answer("TallymoorWindow::onNewWatchlist failed. Exception : There was a failure during startup. Please "
         "restart Tallymoor",
         "OK");
  command(TallymoorWindow::ID_NEW_WATCHLIST);
}

} // namespace
} // namespace Tallymoor
