#include "ViewsTest.h"
#include "foundation/Settings.h"
#include "market/StockNames.h"
#include "session/BookQuestions.h"
#include "views/HeldShareCells.h"
#include "views/PriceChart.h"
#include "widgets/ChartView.h"
#include "widgets/HandlerScope.h"

using namespace Tallymoor;
using namespace Tallymoor::HeldShareCells;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string unsoundWords = "This portfolio has suffered an error. Please restart Tallymoor.";

class SharesHeldTreeItemTest : public ViewsTest {
protected:
  /// Position of a widget's right edge in the window.
  static FXint rightEdge(const FXWindow* widget) {
    FXint x = widget->getWidth();
    for (; widget->getParent() && !widget->isShell(); widget = widget->getParent())
      x += widget->getX();
    return x;
  }
  static FXint columnRightEdge(const Table& table, Column::Function function) {
    const FXint index = table.getColumn(function).index();
    const FXHeader* header = table.getColumnHeader();
    return rightEdge(header) - header->getWidth() + header->getItemOffset(index) + header->getItemSize(index);
  }
  /// Gives the second parcel of a share an unreadable date, so that its purchases can't be listed. The day's
  /// record exists already.
  void spoilBeforeShowing() {
    SharePortfolioUser& user = *portfolios()[u"Trading"];
    checkCashReserve(user);
    XMLHeldShare& share = *user.findHeldShare(u"AAA.AX");
    share.parcels()[1].subElement(u"BuyDate").setValue(u"no date");
    answer(unsoundWords, "OK");
    showTree();
  }
};

TEST_F(SharesHeldTreeItemTest, TheHeadingOfThePurchasesTellsTheCompanysNameOnceItIsKnown) {
  addTrading();
  showTree();
  SharesHeldTreeItem& parcels = *purchases(u"Trading", u"AAA.AX");
  leftClick(parcels);
  EXPECT_TRUE(shows(*parcels.page(), "AAA.AX Purchases"));
  StockNames::remember(u"AAA.AX", u"Alpha & Mining");
  leftClick(parcels);
  EXPECT_TRUE(shows(*parcels.page(), "AAA.AX Purchases (Alpha & Mining)"));
  EXPECT_EQ(String(u"AAA.AX Purchases"), parcels.label());
}

TEST_F(SharesHeldTreeItemTest, TotalsOfSharesAndOfPurchases) {
  buy(addTrading(), u"BBB.AX", 100, 2.0);
  showTree();
  SharesHeldTreeItem& shares = held(u"Trading");
  EXPECT_EQ("$1,500.00", total(shares, &purchaseValue));
  EXPECT_EQ("$1,850.00", total(shares, &currentValue));
  EXPECT_EQ("$150.00", total(shares, &dayGain));
  EXPECT_EQ("$350.00", total(shares, &grossGain));
  EXPECT_EQ("34.91%", total(shares, &portfolioPercent)); // 1,850.00 of 5,300.00.
  EXPECT_EQ("8.82%", total(shares, &dayPercent));        // Of 1,700.00.
  EXPECT_EQ("none", total(shares, &number));
  SharesHeldTreeItem& parcels = *purchases(u"Trading", u"AAA.AX");
  EXPECT_EQ("$1,650.00", total(parcels, &currentValue));
  EXPECT_EQ("10.00%", total(parcels, &dayPercent));
  EXPECT_EQ("none", total(parcels, &portfolioPercent));
  EXPECT_TRUE(shows(*shares.page(), "Totals:"));
}

TEST_F(SharesHeldTreeItemTest, APriceChangesThePartOfEachShareInTheWhole) {
  SharePortfolioUser& user = addPortfolio(u"Trading", 4000.0);
  buy(user, u"AAA.AX", 100, 10.0);
  buy(user, u"BBB.AX", 100, 10.0);
  market().setCurrentPrice(u"AAA.AX", 10.0);
  market().setCurrentPrice(u"BBB.AX", 10.0);
  showTree();
  const Table& table = *held(u"Trading").table();
  EXPECT_EQ("25.00%", cellText(table, 0, u"Portfolio %"));
  market().setCurrentPrice(u"BBB.AX", 20.0);
  runPass();
  EXPECT_EQ("20.00%", cellText(table, 0, u"Portfolio %"));
  EXPECT_EQ("40.00%", cellText(table, 1, u"Portfolio %"));
}

TEST_F(SharesHeldTreeItemTest, HiddenColumnHasNoTotalAndTheOthersStay) {
  addTrading();
  Settings::Instance().writeUnsigned(u"Upgrades", u"Visible Columns Shares Held Table", 1);
  Settings::Instance().writeUnsigned(u"Visible Columns Shares Held Table", u"Current Value", 0);
  showTree();
  SharesHeldTreeItem& shares = held(u"Trading");
  EXPECT_EQ("none", total(shares, &currentValue));
  EXPECT_EQ("$1,300.00", total(shares, &purchaseValue));
  EXPECT_EQ("$350.00", total(shares, &grossGain));
  EXPECT_EQ("31.13%", total(shares, &portfolioPercent));
  EXPECT_EQ("10.00%", total(shares, &dayPercent));
}

TEST_F(SharesHeldTreeItemTest, TotalsStandUnderTheirColumnsWhereverTheseGo) {
  addTrading();
  showTree();
  leftClick(held(u"Trading"));
  settle();
  Table& table = *held(u"Trading").table();
  const TotalsBar& totals = *held(u"Trading").totalsBar();
  const auto expectAligned = [&] {
    for (const Column::Function function : {&purchaseValue, &currentValue, &dayPercent}) {
      const FXLabel* label = totals.total(function);
      EXPECT_TRUE(label->shown() && label->getParent()->shown() && totals.shown());
      EXPECT_EQ(columnRightEdge(table, function), rightEdge(label));
      EXPECT_GE(label->getWidth(), table.columnWidth(table.getColumn(function)));
    }
  };
  expectAligned();
  table.setPosition(-120, 0);
  settle();
  expectAligned();
  table.setColumnWidth(0, 150);
  settle();
  expectAligned();
  EXPECT_EQ(table.columnWidth(table.getColumn(&purchaseValue)), totals.total(&purchaseValue)->getWidth());
}

TEST_F(SharesHeldTreeItemTest, TotalWiderThanItsColumnIsShownWhole) {
  addTrading();
  showTree();
  leftClick(held(u"Trading"));
  Table& table = *held(u"Trading").table();
  table.setColumnWidth(columnOf(table, u"Current Value"), 30);
  settle();
  const FXLabel* label = held(u"Trading").totalsBar()->total(&currentValue);
  EXPECT_GE(label->getWidth(), const_cast<FXLabel*>(label)->getDefaultWidth());
  EXPECT_EQ(columnRightEdge(table, &currentValue), rightEdge(label));
}

// ---- Children ----

TEST_F(SharesHeldTreeItemTest, HasANodeForEachShareByCode) {
  SharePortfolioUser& user = addPortfolio(u"Many", 10000.0);
  for (const char16_t* code : {u"CCC.AX", u"AAA.AX", u"BBB.AX"})
    buy(user, code, 10, 2.0);
  showTree();
  EXPECT_THAT(childLabels(held(u"Many")),
              ElementsAre("AAA.AX Purchases", "BBB.AX Purchases", "CCC.AX Purchases"));
}

TEST_F(SharesHeldTreeItemTest, ViewDateTakesTheChildrenAwayAndTodayBringsThemBack) {
  addTrading();
  showTree();
  leftClick(*purchases(u"Trading", u"AAA.AX"));
  viewDate(Date(2026, 2, 20));
  EXPECT_THAT(childLabels(held(u"Trading")), IsEmpty());
  EXPECT_EQ(&held(u"Trading"), tree().shownItem());
  EXPECT_THAT(rowKeys(*held(u"Trading").table()), ElementsAre("AAA.AX"));
  Date::clearFixedDate();
  tree().updateItems();
  EXPECT_THAT(childLabels(held(u"Trading")), ElementsAre("AAA.AX Purchases"));
  EXPECT_EQ(&held(u"Trading"), tree().shownItem());
}

TEST_F(SharesHeldTreeItemTest, ClickOnANodeWhoseChildrenHaveChangedShowsIt) {
  addTrading();
  showTree();
  Date::setFixedDate(Date(2026, 2, 20));
  leftClick(held(u"Trading"));
  EXPECT_EQ(&held(u"Trading"), tree().shownItem());
  EXPECT_THAT(childLabels(held(u"Trading")), IsEmpty());
}

TEST_F(SharesHeldTreeItemTest, PageOfASharesPurchasesSurvivesANewNeighbour) {
  SharePortfolioUser& user = addTrading();
  showTree();
  leftClick(*purchases(u"Trading", u"AAA.AX"));
  market().setHistory(u"BBB.AX", Date(2026, 1, 20), Date(2026, 3, 3), 3.0);
  user.buyShares(u"BBB.AX", {Date(2026, 2, 2), 5, 3.0, 0.0, String()});
  node(u"Trading").transactionMade();
  EXPECT_THAT(childLabels(held(u"Trading")), ElementsAre("AAA.AX Purchases", "BBB.AX Purchases"));
  EXPECT_EQ(purchases(u"Trading", u"AAA.AX"), tree().shownItem());
  EXPECT_EQ(tree().switcher()->childAtIndex(tree().switcher()->getCurrent()),
            purchases(u"Trading", u"AAA.AX")->page());
}

TEST_F(SharesHeldTreeItemTest, NodesOfStocksThatAreStillHeldAreNotMadeAnew) {
  SharePortfolioUser& user = addTrading();
  buy(user, u"CCC.AX", 5, 3.0);
  buy(user, u"EEE.AX", 5, 3.0);
  showTree();
  const SharesHeldTreeItem* const first = purchases(u"Trading", u"AAA.AX");
  const SharesHeldTreeItem* const last = purchases(u"Trading", u"EEE.AX");
  {
    const HandlerScope scope;
    node(u"Trading").transactionMade();
    buy(user, u"BBB.AX", 5, 3.0);
    buy(user, u"FFF.AX", 5, 3.0);
    user.removeHeldShare(u"CCC.AX");
  }
  EXPECT_THAT(childLabels(held(u"Trading")),
              ElementsAre("AAA.AX Purchases", "BBB.AX Purchases", "EEE.AX Purchases", "FFF.AX Purchases"));
  EXPECT_EQ(first, purchases(u"Trading", u"AAA.AX"));
  EXPECT_EQ(last, purchases(u"Trading", u"EEE.AX"));
}

TEST_F(SharesHeldTreeItemTest, TableOutOfSightIsFilledWhenItIsShown) {
  SharePortfolioUser& user = addTrading();
  showTree();
  leftClick(cash());
  PortfolioTable* const table = sold().table();
  {
    const HandlerScope scope;
    node(u"Trading").transactionMade();
    user.sellShares(u"AAA.AX", {Date(2026, 3, 3), 200, 6.6, 0.0, String()}, true);
  }
  EXPECT_TRUE(table->hasChangedRecords()) << "it must read nothing before it is filled";
  EXPECT_EQ(0, table->getNumRows());
  leftClick(sold());
  EXPECT_FALSE(table->hasChangedRecords());
  EXPECT_EQ(1, table->getNumRows());
}

TEST_F(SharesHeldTreeItemTest, StockBoughtOutOfSightIsWatched) {
  SharePortfolioUser& user = addTrading();
  showTree();
  leftClick(cash());
  buy(user, u"BBB.AX", 5, 3.0);
  node(u"Trading").transactionMade();
  EXPECT_TRUE(TallymoorInternet::Instance().priceUpdater().hasCode(u"BBB.AX"));
}

// ---- Commands ----

TEST_F(SharesHeldTreeItemTest, PopupsOfBothKinds) {
  addTrading();
  showTree();
  EXPECT_THAT(popupOf(held(u"Trading"), "Buy shares..."), ElementsAre("Buy shares...", "Sell shares..."));
  EXPECT_THAT(popupOf(*purchases(u"Trading", u"AAA.AX"), "Buy more AAA.AX..."),
              ElementsAre("Buy more AAA.AX...", "Sell some AAA.AX..."));
}

TEST_F(SharesHeldTreeItemTest, BuyingMoreFromAPurchasesNode) {
  addTrading();
  showTree();
  leftClick(*purchases(u"Trading", u"AAA.AX"));
  choose(*purchases(u"Trading", u"AAA.AX"), "Buy more AAA.AX...", [this] { enterPurchase("", "10", "6.6"); });
  EXPECT_EQ(3, purchases(u"Trading", u"AAA.AX")->table()->getNumRows());
  EXPECT_EQ("260.00", cellText(*held(u"Trading").table(), 0, u"Number"));
  EXPECT_EQ("$3,534.00",
            figure(node(u"Trading"), "Capital in cash")); // 66.00 and the default brokerage of 50.00.
}

TEST_F(SharesHeldTreeItemTest, BuyingANewShareFromSharesHeld) {
  addTrading();
  market().setHistory(u"BBB.AX", Date(2026, 1, 20), Date(2026, 3, 3), 3.0);
  showTree();
  leftClick(held(u"Trading"));
  choose(held(u"Trading"), "Buy shares...", [this] { enterPurchase("BBB.AX", "10", "3"); });
  EXPECT_THAT(rowKeys(*held(u"Trading").table()), ElementsAre("AAA.AX", "BBB.AX"));
  EXPECT_THAT(childLabels(held(u"Trading")), ElementsAre("AAA.AX Purchases", "BBB.AX Purchases"));
}

TEST_F(SharesHeldTreeItemTest, SellingSomeFromAPurchasesNode) {
  addTrading();
  showTree();
  leftClick(*purchases(u"Trading", u"AAA.AX"));
  choose(*purchases(u"Trading", u"AAA.AX"), "Sell some AAA.AX...", [this] {
    whenModal("Sell Shares", [this](FXWindow& dialog) {
      EXPECT_EQ("AAA.AX", std::string(find<FXComboBox>(dialog)->getText().text()));
      type(field(dialog, "Number sold"), "200");
      type(field(dialog, "Share price"), "6.60");
      press(dialog, "OK");
    });
  });
  // The first parcel is gone; its 200 shares cost 5.00 each because of the split.
  EXPECT_THAT(rowKeys(*purchases(u"Trading", u"AAA.AX")->table()), ElementsAre("20/02/2026"));
  EXPECT_EQ("50.00", cellText(*held(u"Trading").table(), 0, u"Number"));
  EXPECT_THAT(rowKeys(*sold().table()), ElementsAre("03/03/2026"));
  EXPECT_EQ("$4,920.00", figure(node(u"Trading"), "Capital in cash")); // 1,320.00 less 50.00 of brokerage.
  EXPECT_EQ(purchases(u"Trading", u"AAA.AX"), tree().shownItem());
}

TEST_F(SharesHeldTreeItemTest, SellingAllOfAShareTakesItsNodeAway) {
  addTrading();
  showTree();
  leftClick(held(u"Trading"));
  choose(held(u"Trading"), "Sell shares...", [this] {
    whenModal("Sell Shares", [this](FXWindow& dialog) {
      find<FXComboBox>(dialog)->setCurrentItem(1, TRUE);
      EXPECT_EQ(250.0, String(field(dialog, "Number sold").getText().text()).toDouble());
      press(dialog, "OK");
    });
  });
  EXPECT_THAT(childLabels(held(u"Trading")), IsEmpty());
  EXPECT_THAT(rowKeys(*held(u"Trading").table()), IsEmpty());
  EXPECT_THAT(rowKeys(*sold().table()), ElementsAre("03/03/2026", "03/03/2026"));
}

TEST_F(SharesHeldTreeItemTest, FailuresOfCommandsAreReported) {
  addTrading();
  showTree();
  SharesHeldTreeItem& shares = held(u"Trading");
  choose(shares, "Buy shares...", [this] {
    failInside("Buy Shares");
    answer("SharesHeldTreeItem::onBuyShares failed. Exception : test", "OK");
  });
  choose(shares, "Sell shares...", [this] {
    failInside("Sell Shares");
    answer("SharesHeldTreeItem::onSellShares failed. Exception : test", "OK");
  });
  failInside("Buy shares...");
  answer("SharesHeldTreeItem::onRightClick failed. Exception : test", "OK");
  shares.onRightClick(100, 100);
}

TEST_F(SharesHeldTreeItemTest, FailuresOfTheTwoCommandsWithoutAMenuAreReported) {
  addTrading();
  spoilBeforeShowing();
  SharesHeldTreeItem& shares = held(u"Trading");
  failInside(unsoundWords);
  answer("SharesHeldTreeItem::onAddShares failed. Exception : test", "OK");
  shares.handle(nullptr, FXSEL(SEL_COMMAND, SharesHeldTreeItem::ID_ADD_SHARES), nullptr);
  failInside(unsoundWords);
  answer("SharesHeldTreeItem::onRemoveShares failed. Exception : test", "OK");
  shares.handle(nullptr, FXSEL(SEL_COMMAND, SharesHeldTreeItem::ID_REMOVE_SHARES), nullptr);
}

TEST_F(SharesHeldTreeItemTest, TheTwoCommandsWithoutAMenuDoNothingOnASoundNode) {
  addTrading();
  showTree();
  SharesHeldTreeItem& shares = held(u"Trading");
  EXPECT_EQ(1, shares.handle(nullptr, FXSEL(SEL_COMMAND, SharesHeldTreeItem::ID_ADD_SHARES), nullptr));
  EXPECT_EQ(1, shares.handle(nullptr, FXSEL(SEL_COMMAND, SharesHeldTreeItem::ID_REMOVE_SHARES), nullptr));
  EXPECT_TRUE(boxes().empty());
}

// ---- Failures ----

TEST_F(SharesHeldTreeItemTest, ANodeThatFailedToBuildBreaksItsAncestorsButNoOtherBranch) {
  addTrading();
  buy(addPortfolio(u"Zebra", 1000.0), u"BBB.AX", 5, 6.0);
  spoilBeforeShowing();
  EXPECT_FALSE(purchases(u"Trading", u"AAA.AX")->isSound());
  EXPECT_FALSE(held(u"Trading").isSound());
  EXPECT_FALSE(node(u"Trading").isSound());
  EXPECT_FALSE(root().isSound());
  EXPECT_TRUE(node(u"Zebra").isSound());
  leftClick(node(u"Zebra"));
  EXPECT_EQ(&node(u"Zebra"), tree().shownItem());
  for (InvestmentTreeItem* item :
       {static_cast<InvestmentTreeItem*>(purchases(u"Trading", u"AAA.AX")),
        static_cast<InvestmentTreeItem*>(&held(u"Trading")),
        static_cast<InvestmentTreeItem*>(&node(u"Trading")), static_cast<InvestmentTreeItem*>(&root())}) {
    answer(unsoundWords, "OK");
    leftClick(*item);
    EXPECT_EQ(&node(u"Zebra"), tree().shownItem());
    answer(unsoundWords, "OK");
    clickNode(*item, SEL_RIGHTBUTTONPRESS, SEL_RIGHTBUTTONRELEASE, RIGHTBUTTON);
  }
  EXPECT_EQ(9u, boxes().size()); // And one when the tree was shown.
}

TEST_F(SharesHeldTreeItemTest, CommandsOfBrokenNodesReportIt) {
  addTrading();
  spoilBeforeShowing();
  answer(unsoundWords, "OK");
  held(u"Trading").handle(nullptr, FXSEL(SEL_COMMAND, SharesHeldTreeItem::ID_BUY_SHARES), nullptr);
  answer(unsoundWords, "OK");
  command(held(u"Trading"), SharesHeldTreeItem::ID_SELL_SHARES);
  for (const FXSelector command :
       {SharePortfolioTreeItem::ID_BUY_SHARES, SharePortfolioTreeItem::ID_SELL_SHARES,
        SharePortfolioTreeItem::ID_RECEIVE_DIVIDENDS, SharePortfolioTreeItem::ID_RECEIVE_INTEREST,
        SharePortfolioTreeItem::ID_DEPOSIT_CASH, SharePortfolioTreeItem::ID_WITHDRAW_CASH,
        SharePortfolioTreeItem::ID_RENAME_SHARE_PORTFOLIO,
        SharePortfolioTreeItem::ID_DELETE_SHARE_PORTFOLIO}) {
    answer(unsoundWords, "OK");
    node(u"Trading").handle(nullptr, FXSEL(SEL_COMMAND, command), nullptr);
  }
  answer(unsoundWords, "OK");
  root().handle(nullptr, FXSEL(SEL_COMMAND, TotalCapTreeItem::ID_NEW_SHARE_PORTFOLIO), nullptr);
  EXPECT_FALSE(root().takePortfoliosChanged());
  EXPECT_TRUE(portfolios().contains(u"Trading"));
}

TEST_F(SharesHeldTreeItemTest, UpdatesOfBrokenNodesAreSilent) {
  addTrading();
  spoilBeforeShowing();
  const std::size_t before = boxes().size();
  tree().updateItems();
  runPass();
  EXPECT_EQ(before, boxes().size());
}

TEST_F(SharesHeldTreeItemTest, PurchasesHaveTheChartOfTheirShareBelow) {
  addTrading();
  showTree();
  EXPECT_EQ(nullptr, held(u"Trading").chart());
  SharesHeldTreeItem& item = *purchases(u"Trading", u"AAA.AX");
  EXPECT_EQ(String(), item.chart()->code()); // Not visible yet.
  leftClick(item);
  EXPECT_EQ(String(u"AAA.AX"), item.chart()->code());
  EXPECT_EQ(2u, item.chart()->chart().model().markers.size());
  const FXWindow& splitter = *item.chart()->getParent();
  EXPECT_GT(splitter.getHeight(), 0);
  EXPECT_GE(item.chart()->getY(), splitter.getHeight() / 2);
}

} // namespace
