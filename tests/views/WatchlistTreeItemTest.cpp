#include "views/WatchlistTreeItem.h"
#include "WatchlistsTest.h"
#include "foundation/Settings.h"
#include "views/WatchlistChart.h"
#include "widgets/ChartView.h"
#include "widgets/HandlerScope.h"

using namespace Tallymoor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using WatchlistTreeItemTest = WatchlistsTest;

// ---- The tree ----

TEST_F(WatchlistTreeItemTest, TreeHasTheListsOfThePortfoliosThenTheUsers) {
  addPortfolio(u"Trading", 100.0);
  addPortfolio(u"Long", 100.0);
  addList(u"Zinc", {});
  addList(u"Banks", {});
  showTrees();
  EXPECT_THAT(listLabels(), ElementsAre("for Long", "for Trading", "Banks", "Zinc"));
  EXPECT_TRUE(heldList(u"Long").isSelected());
  EXPECT_EQ(&heldList(u"Long"), watchTree().shownItem());
}

TEST_F(WatchlistTreeItemTest, NodesHaveTheirIcons) {
  FXIcon held(&app(), nullptr, 0, IMAGE_OWNED, 16, 16);
  FXIcon users(&app(), nullptr, 0, IMAGE_OWNED, 16, 16);
  held.create();
  users.create();
  watchOne();
  NodeIcons icons;
  icons.watchHeld = &held;
  icons.watchlist = &users;
  showTrees(icons);
  EXPECT_EQ(&held, heldList().getOpenIcon());
  EXPECT_EQ(&users, list().getClosedIcon());
}

TEST_F(WatchlistTreeItemTest, ListShowsItsCodesAndNotItsMark) {
  watchOne();
  WatchlistSettings::addCode(u"Main", u"BBB.AX");
  EXPECT_TRUE(Settings::Instance().readBool(u"Watchlist Main", u"watchlist exists"));
  EXPECT_TRUE(Settings::Instance().readBool(u"Watchlist Main", u"BBB.AX"));
  market().setHistory(u"BBB.AX", Date(2024, 12, 1), Date(2026, 3, 3), 2.0);
  showTrees();
  EXPECT_THAT(rowKeys(table()), ElementsAre("AAA.AX", "BBB.AX"));
  EXPECT_EQ(String(u"Main"), table().name());
}

TEST_F(WatchlistTreeItemTest, PortfolioListsWhatIsHeldAndItsIndex) {
  SharePortfolioUser& user = addTrading();
  buy(user, u"BBB.AX", 100, 2.0);
  buy(user, u"CCC.AX", 100, 2.0);
  user.sellShares(u"CCC.AX", {Date(2026, 2, 20), 100, 2.5, 0.0, String()}, true);
  market().setHistory(u"^XAO", Date(2024, 12, 1), Date(2026, 3, 3), 8000.0);
  user.setComparisonIndex(u"^XAO");
  showTrees();
  EXPECT_EQ("for Trading", heldList().label().toUTF8());
  EXPECT_THAT(rowKeys(*heldList().table()), ElementsAre("AAA.AX", "BBB.AX", "^XAO"));
}

TEST_F(WatchlistTreeItemTest, IndexThatIsHeldTooIsListedOnce) {
  SharePortfolioUser& user = addTrading();
  user.setComparisonIndex(u"AAA.AX");
  showTrees();
  EXPECT_THAT(rowKeys(*heldList().table()), ElementsAre("AAA.AX"));
}

TEST_F(WatchlistTreeItemTest, PortfolioListsWhatItHeldOnTheViewDate) {
  SharePortfolioUser& user = addTrading(); // AAA.AX since 2 February.
  buy(user, u"BBB.AX", 100, 2.0);
  user.sellShares(u"BBB.AX", {Date(2026, 2, 20), 100, 2.5, 0.0, String()}, true);
  showTrees();
  EXPECT_THAT(rowKeys(*heldList().table()), ElementsAre("AAA.AX"));
  viewDateOfBoth(Date(2026, 2, 19)); // The day before the sale.
  EXPECT_THAT(rowKeys(*heldList().table()), ElementsAre("AAA.AX", "BBB.AX"));
  viewDateOfBoth(Date(2026, 2, 20));
  EXPECT_THAT(rowKeys(*heldList().table()), ElementsAre("AAA.AX"));
  viewDateOfBoth(Date(2026, 2, 1)); // Before the first purchase.
  EXPECT_THAT(rowKeys(*heldList().table()), IsEmpty());
  Date::clearFixedDate();
  watchTree().updateItems();
  EXPECT_THAT(rowKeys(*heldList().table()), ElementsAre("AAA.AX"));
}

TEST_F(WatchlistTreeItemTest, NewHoldingIsListedAtTheNextUpdate) {
  SharePortfolioUser& user = addTrading();
  market().setHistory(u"BBB.AX", Date(2026, 1, 20), Date(2026, 3, 3), 2.0);
  showTrees();
  user.buyShares(u"BBB.AX", {Date(2026, 3, 2), 10, 2.0, 0.0, String()});
  node(u"Trading").transactionMade();
  leftClick(heldList());
  EXPECT_THAT(rowKeys(*heldList().table()), ElementsAre("AAA.AX", "BBB.AX"));
}

// ---- Added and removed portfolios ----

TEST_F(WatchlistTreeItemTest, DeletedPortfolioTakesItsListAway) {
  addTrading();
  addPortfolio(u"Other", 100.0);
  addList(u"Main", {});
  showTrees();
  leftClick(heldList(u"Other"));
  choose(node(u"Trading"), "Delete share portfolio Trading...",
         [this] { answer("Are you sure you want to delete share portfolio Trading?", "Yes"); });
  // The list still exists until the update, and shows nothing that needs the portfolio.
  EXPECT_THAT(listLabels(), ElementsAre("for Other", "for Trading", "Main"));
  heldList(u"Trading").table()->updateTable();
  EXPECT_EQ(0.0, lists().capitalOf(u"Trading"));
  lists().update();
  EXPECT_THAT(listLabels(), ElementsAre("for Other", "Main"));
  EXPECT_EQ(&heldList(u"Other"), watchTree().shownItem());
}

TEST_F(WatchlistTreeItemTest, ClickOnTheListOfADeletedPortfolioShowsAnother) {
  addTrading();
  addPortfolio(u"Other", 100.0);
  showTrees();
  leftClick(heldList(u"Trading"));
  choose(node(u"Trading"), "Delete share portfolio Trading...",
         [this] { answer("Are you sure you want to delete share portfolio Trading?", "Yes"); });
  leftClick(heldList(u"Trading"));
  EXPECT_THAT(listLabels(), ElementsAre("for Other"));
  EXPECT_EQ(&heldList(u"Other"), watchTree().shownItem());
}

TEST_F(WatchlistTreeItemTest, TreeIsRefilledBeforeItIsWalked) {
  addTrading();
  addPortfolio(u"Other", 100.0);
  showTrees();
  portfolios().erase(u"Trading");
  root().reloadPortfolios();
  watchTree().updateItems();
  EXPECT_THAT(listLabels(), ElementsAre("for Other"));
}

TEST_F(WatchlistTreeItemTest, RenamedPortfolioRenamesItsList) {
  addTrading();
  showTrees();
  root().renamePortfolio(u"Trading", u"Growth");
  lists().update();
  EXPECT_THAT(listLabels(), ElementsAre("for Growth"));
  EXPECT_THAT(rowKeys(*heldList(u"Growth").table()), ElementsAre("AAA.AX"));
}

TEST_F(WatchlistTreeItemTest, TransactionLeavesTheNodesAsTheyAre) {
  addTrading();
  showTrees();
  WatchlistTable* table = heldList().table();
  node(u"Trading").transactionMade();
  lists().update();
  EXPECT_EQ(table, heldList().table()); // So its order and its selected row stay.
}

// ---- The user's own lists ----

TEST_F(WatchlistTreeItemTest, NewListIsShownAndLasts) {
  watchOne();
  showTrees();
  makeList("Miners");
  EXPECT_THAT(listLabels(), ElementsAre("for Trading", "Main", "Miners"));
  EXPECT_EQ(&list(u"Miners"), watchTree().shownItem());
  EXPECT_TRUE(list(u"Miners").isSelected());
  EXPECT_TRUE(Settings::Instance().readBool(u"Watchlist Miners", u"watchlist exists"));
  EXPECT_THAT(rowKeys(table(u"Miners")), IsEmpty());
}

TEST_F(WatchlistTreeItemTest, NameOfAListIsCleaned) {
  watchOne();
  showTrees();
  makeList("  Oil & <Gas>/x ");
  EXPECT_THAT(listLabels(), ElementsAre("for Trading", "Main", "Oil Gasx"));
}

TEST_F(WatchlistTreeItemTest, AnExistingNameShowsItsList) {
  watchOne();
  showTrees();
  makeList("Main");
  EXPECT_THAT(listLabels(), ElementsAre("for Trading", "Main"));
  EXPECT_EQ(&list(), watchTree().shownItem());
  EXPECT_THAT(rowKeys(table()), ElementsAre("AAA.AX")); // Nothing is lost.
}

TEST_F(WatchlistTreeItemTest, EmptyNameIsRefused) {
  watchOne();
  showTrees();
  whenModal("Add New Watchlist", [this](FXWindow& dialog) {
    EXPECT_TRUE(shows(dialog, "Enter the name for the new watchlist."));
    type(*find<FXTextField>(dialog), "<>");
    answer("You must enter a value.", "OK");
    press(dialog, "OK");
    press(dialog, "Cancel");
  });
  lists().onNew();
  EXPECT_THAT(listLabels(), ElementsAre("for Trading", "Main"));
}

TEST_F(WatchlistTreeItemTest, ListIsRemovedWithItsStocksAfterAQuestion) {
  watchOne();
  addList(u"Other", {u"AAA.AX"});
  PriceLimits{5.0, 7.0}.keepForStock(u"AAA.AX");
  showTrees();
  leftClick(list());
  choose(list(), "Remove Main...", [this] { answer("Do you want to remove Main?", "No"); });
  EXPECT_THAT(listLabels(), ElementsAre("for Trading", "Main", "Other"));
  choose(list(), "Remove Main...", [this] { answer("Do you want to remove Main?", "Yes"); });
  EXPECT_THAT(listLabels(), ElementsAre("for Trading", "Other"));
  EXPECT_EQ(&heldList(), watchTree().shownItem());
  EXPECT_THAT(WatchlistSettings::codes(u"Main"), IsEmpty());
  EXPECT_FALSE(WatchlistSettings::exists(u"Main"));
  EXPECT_FALSE(PriceLimits::ofStock(u"AAA.AX").areNone());
  EXPECT_TRUE(TallymoorInternet::Instance().priceUpdater().hasCode(u"AAA.AX"));
}

TEST_F(WatchlistTreeItemTest, NodeOffersItsCommands) {
  watchOne();
  showTrees();
  EXPECT_THAT(popupOf(list(), "Add a stock to watch..."),
              ElementsAre("Add a stock to watch...", "Remove Main..."));
}

TEST_F(WatchlistTreeItemTest, PortfoliosListHasNoCommands) {
  addTrading();
  showTrees();
  EXPECT_EQ(0, heldList().onRightClick(10, 10));
  clickNode(heldList(), SEL_RIGHTBUTTONPRESS, SEL_RIGHTBUTTONRELEASE, RIGHTBUTTON);
  EXPECT_EQ(nullptr, app().getPopupWindow());
  rightClickRow(*heldList().table(), 0);
  EXPECT_EQ(nullptr, app().getPopupWindow());
}

// ---- Stocks ----

TEST_F(WatchlistTreeItemTest, StockIsFoundBySearchAndAdded) {
  watchOne();
  market().addListing(u"BHP.AX", u"Broken Hill", u"Australia");
  market().setHistory(u"BHP.AX", Date(2024, 12, 1), Date(2026, 3, 3), 45.0);
  showTrees();
  addStock(u"Main", [this](FXWindow& dialog) {
    EXPECT_TRUE(shows(dialog, "Enter the stock code to watch."));
    type(*find<FXTextField>(dialog), "broken");
    whenModal("Stock Search", [this](FXWindow& search) { press(search, "OK"); });
    press(dialog, "Search for stock code");
    EXPECT_STREQ("BHP.AX", find<FXTextField>(dialog)->getText().text());
    EXPECT_TRUE(shows(dialog, "Broken Hill in Australia"));
    press(dialog, "OK");
  });
  EXPECT_THAT(rowKeys(table()), ElementsAre("AAA.AX", "BHP.AX"));
  EXPECT_EQ("45.00", cellText(table(), 1, u"Price Now"));
  EXPECT_TRUE(Settings::Instance().readBool(u"Watchlist Main", u"BHP.AX"));
  EXPECT_TRUE(TallymoorInternet::Instance().priceUpdater().hasCode(u"BHP.AX"));
}

TEST_F(WatchlistTreeItemTest, StockAddedTwiceIsOneRow) {
  watchOne();
  showTrees();
  addStock(u"Main", " AAA.AX ");
  EXPECT_THAT(rowKeys(table()), ElementsAre("AAA.AX"));
  EXPECT_THAT(Settings::Instance().keys(u"Watchlist Main"),
              testing::UnorderedElementsAre(u"watchlist exists", u"AAA.AX"));
}

TEST_F(WatchlistTreeItemTest, EmptyCodeIsRefused) {
  watchOne();
  showTrees();
  for (const char* text : {"", "  ", "watchlist exists"})
    addStock(u"Main", [this, text](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), text);
      answer("You must enter a value.", "OK");
      press(dialog, "OK");
      press(dialog, "Cancel");
    });
  EXPECT_THAT(rowKeys(table()), ElementsAre("AAA.AX"));
}

TEST_F(WatchlistTreeItemTest, ACodeWithSpecialCharactersIsKept) {
  watchOne();
  for (const String& code : {String(u"GC=F"), String(u"^XAO"), String(u"#1]")})
    WatchlistSettings::addCode(u"Main", code);
  EXPECT_THAT(WatchlistSettings::codes(u"Main"),
              testing::UnorderedElementsAre(u"#1]", u"AAA.AX", u"GC=F", u"^XAO"));
}

TEST_F(WatchlistTreeItemTest, AFailedOrEmptySearchIsReported) {
  watchOne();
  showTrees();
  addStock(u"Main", [this](FXWindow& dialog) {
    answer("You must enter a code to search for.", "OK");
    press(dialog, "Search for stock code");
    type(*find<FXTextField>(dialog), "broken");
    TallymoorInternet::Instance().goOffline();
    answer("WatchStockDialog::onSearchCode failed. HTTPException : TallymoorInternet::stockSearch - internet "
           "offline.",
           "OK");
    press(dialog, "Search for stock code");
    press(dialog, "Cancel");
  });
  EXPECT_THAT(rowKeys(table()), ElementsAre("AAA.AX"));
}

// ---- The chart ----

TEST_F(WatchlistTreeItemTest, ChartShowsTheChosenStock) {
  watchOne();
  market().setHistory(u"BBB.AX", Date(2024, 12, 1), Date(2026, 3, 3), 2.0);
  WatchlistSettings::addCode(u"Main", u"BBB.AX");
  showTrees();
  EXPECT_EQ(String(), list().chart()->code()); // Not visible yet.
  leftClick(list());
  EXPECT_EQ(String(u"AAA.AX"), list().chart()->code());
  table().setCurrentItem(1, 2, TRUE);
  EXPECT_EQ(String(u"BBB.AX"), list().chart()->code());
  leftClick(list());
  EXPECT_EQ(String(u"BBB.AX"), list().chart()->code()); // The selection stays.
  chooseFromRow(table(), 1, "Remove stock BBB.AX from watchlist");
  EXPECT_EQ(String(u"AAA.AX"), list().chart()->code());
}

TEST_F(WatchlistTreeItemTest, ChartShowsLimitsAsSoonAsTheyAreTyped) {
  watchOne();
  showTrees();
  leftClick(list());
  EXPECT_THAT(list().chart()->chart().model().levels, IsEmpty());
  typeInto(table(), 0, u"Price Min/Max", "4 - 9");
  const std::vector<ChartLevel> levels = list().chart()->chart().model().levels;
  ASSERT_EQ(2u, levels.size());
  EXPECT_DOUBLE_EQ(4.0, levels[0].value);
  EXPECT_DOUBLE_EQ(9.0, levels[1].value);
  typeInto(table(), 0, u"Price Min/Max", "");
  EXPECT_THAT(list().chart()->chart().model().levels, IsEmpty());
}

TEST_F(WatchlistTreeItemTest, ChartOfADeletedPortfoliosStockIsStillDrawn) {
  addTrading();
  addPortfolio(u"Other", 100.0);
  showTrees();
  leftClick(heldList(u"Trading"));
  EXPECT_EQ(String(u"AAA.AX"), heldList(u"Trading").chart()->code());
  choose(node(u"Trading"), "Delete share portfolio Trading...",
         [this] { answer("Are you sure you want to delete share portfolio Trading?", "Yes"); });
  heldList(u"Trading").chart()->refresh();
  heldList(u"Trading").chart()->chart().update();
  letEventsPass();
  EXPECT_EQ(1u, lists().portfolios().size());
}

// ---- Failures ----

TEST_F(WatchlistTreeItemTest, FailuresAreReported) {
  watchOne();
  showTrees();
  choose(list(), "Add a stock to watch...", [this] {
    failInside("Add Stock to Watch");
    answer("WatchlistTreeItem::onAdd failed. Exception : test", "OK");
  });
  choose(list(), "Remove Main...", [this] {
    failInside("Do you want to remove Main?");
    answer("WatchlistTreeItem::onRemove failed. Exception : test", "OK");
  });
  failInside("Add a stock to watch...");
  answer("WatchlistTreeItem::onRightClick failed. Exception : test", "OK");
  clickNode(list(), SEL_RIGHTBUTTONPRESS, SEL_RIGHTBUTTONRELEASE, RIGHTBUTTON);
  failInside("Add New Watchlist");
  answer("WatchlistRootTreeItem::onNew failed. Exception : test", "OK");
  lists().onNew();
  EXPECT_THAT(rowKeys(table()), ElementsAre("AAA.AX"));
}

TEST_F(WatchlistTreeItemTest, ABrokenListReportsItAndDoesNothing) {
  watchOne();
  showTrees();
  list().setSound(false);
  const char* words = "This portfolio has suffered an error. Please restart Tallymoor.";
  answer(words, "OK");
  leftClick(list());
  EXPECT_EQ(&heldList(), watchTree().shownItem());
  answer(words, "OK");
  clickNode(list(), SEL_RIGHTBUTTONPRESS, SEL_RIGHTBUTTONRELEASE, RIGHTBUTTON);
  answer(words, "OK");
  command(list(), WatchlistTreeItem::ID_ADD);
  answer(words, "OK");
  command(list(), WatchlistTreeItem::ID_REMOVE);
  list().update();
  EXPECT_EQ(4u, boxes().size());
}

} // namespace
