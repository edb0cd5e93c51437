#include "WatchlistsTest.h"
#include "views/HeldShareCells.h"
#include "views/PerformanceView.h"
#include "views/PortfolioPerformanceTable.h"
#include "views/SummaryFrame.h"

using namespace Tallymoor;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

/// The tree as it stands when the window of the start can be used: the capital records are brought up to date
/// afterwards, one by one. "Savings" holds 2,650.00, "Trading" shares and cash for 5,300.00.
class PortfoliosAtTheStartTest : public WatchlistsTest {
protected:
  void SetUp() override {
    WatchlistsTest::SetUp();
    addTrading();
    addPortfolio(u"Savings", 2650.0);
  }

  void startTree() {
    makeRoot();
    tree().showFirst();
    settle();
  }
  std::vector<std::string> summary() { return labels(*find<SummaryFrame>(*root().madePage())); }
  const PortfolioPerformanceTable& performance() {
    return *find<PortfolioPerformanceTable>(*root().madePage());
  }
  void expectAll() {
    EXPECT_THAT(summary(),
                ElementsAre("Capital in Savings", "$2,650.00", "Percentage", "33.33%", "Capital in Trading",
                            "$5,300.00", "Percentage", "66.67%", "Total Capital", "$7,950.00", "Gain today",
                            "1.94%", "Gain this week", "3.65%"));
    EXPECT_EQ("$7,950.00", cellText(performance(), 0, u"Total Capital"));
    EXPECT_EQ("", performance().shownEmptyText().toUTF8());
  }
  void finishStart() {
    while (root().bringNextUpToDate()) {
    }
    settle();
  }
};

TEST_F(PortfoliosAtTheStartTest, AFigureIsShownWhenItIsKnownAndATotalWhenAllAre) {
  startTree();
  EXPECT_THAT(childLabels(root()), ElementsAre("Savings", "Trading"));
  EXPECT_THAT(summary(), ElementsAre("Capital in Savings", "...", "Percentage", "...", "Capital in Trading",
                                     "...", "Percentage", "...", "Total Capital", "...", "Gain today", "...",
                                     "Gain this week", "..."));
  EXPECT_EQ(0, performance().getNumRows());
  EXPECT_EQ("Your portfolios are being loaded...", performance().shownEmptyText().toUTF8());
  EXPECT_TRUE(root().bringNextUpToDate());
  settle();
  EXPECT_THAT(summary(), ElementsAre("Capital in Savings", "$2,650.00", "Percentage", "...",
                                     "Capital in Trading", "...", "Percentage", "...", "Total Capital", "...",
                                     "Gain today", "...", "Gain this week", "..."));
  EXPECT_EQ(0, performance().getNumRows());
  EXPECT_FALSE(root().isComplete());
  EXPECT_TRUE(root().bringNextUpToDate());
  settle();
  EXPECT_TRUE(root().isComplete());
  expectAll();
}

TEST_F(PortfoliosAtTheStartTest, ARefreshOfAllViewsShowsNoTotalBefore) {
  startTree();
  tree().updateItems();
  root().activate();
  settle();
  EXPECT_FALSE(node(u"Savings").isUpToDate());
  EXPECT_EQ("...", figure(root(), "Total Capital"));
  finishStart();
  expectAll();
}

TEST_F(PortfoliosAtTheStartTest, APriceShowsNoTotalBefore) {
  startTree();
  EXPECT_TRUE(root().bringNextUpToDate());
  market().setCurrentPrice(u"AAA.AX", 7.0);
  runPass();
  EXPECT_FALSE(node(u"Trading").isUpToDate());
  EXPECT_EQ("$2,650.00", figure(root(), "Capital in Savings"));
  EXPECT_EQ("...", figure(root(), "Capital in Trading"));
  EXPECT_EQ("...", figure(root(), "Total Capital"));
  finishStart();
  EXPECT_EQ("$5,400.00", figure(root(), "Capital in Trading"));
  EXPECT_EQ("$8,050.00", figure(root(), "Total Capital"));
}

TEST_F(PortfoliosAtTheStartTest, APortfolioThatIsOpenedComesFirst) {
  startTree();
  leftClick(node(u"Trading"));
  EXPECT_EQ("$5,300.00", figure(node(u"Trading"), "Total Capital"));
  EXPECT_EQ("$5,300.00", cellText(node(u"Trading").performance()->table(), 0, u"Total Capital"));
  EXPECT_FALSE(node(u"Savings").isUpToDate());
  leftClick(root());
  EXPECT_EQ("$5,300.00", figure(root(), "Capital in Trading"));
  EXPECT_EQ("...", figure(root(), "Capital in Savings"));
  EXPECT_EQ("...", figure(root(), "Total Capital"));
  finishStart();
  expectAll();
}

TEST_F(PortfoliosAtTheStartTest, ATotalThatIsOutOfSightIsRightWhenItIsOpened) {
  startTree();
  leftClick(node(u"Trading"));
  finishStart();
  leftClick(root());
  expectAll();
}

TEST_F(PortfoliosAtTheStartTest, ATableBringsItsPortfolioUpToDate) {
  startTree();
  EXPECT_EQ("$1,650.00", total(held(u"Trading"), &HeldShareCells::currentValue));
  EXPECT_TRUE(node(u"Trading").isUpToDate());
  EXPECT_FALSE(node(u"Savings").isUpToDate());
}

TEST_F(PortfoliosAtTheStartTest, ASaleIsCheckedAgainstARecordThatIsUpToDate) {
  startTree();
  whenModal("Sell Shares", [this](FXWindow& dialog) {
    EXPECT_TRUE(node(u"Trading").hasRecordOfToday());
    press(dialog, "Cancel");
  });
  node(u"Trading").sellShares(String());
  EXPECT_FALSE(node(u"Savings").isUpToDate());
}

TEST_F(PortfoliosAtTheStartTest, ATransactionMeanwhileCountsInTheTotal) {
  startTree();
  enterCash("Deposit cash", "100", "gift");
  node(u"Trading").depositCash();
  settle();
  EXPECT_EQ("$5,400.00", figure(root(), "Capital in Trading"));
  EXPECT_EQ("...", figure(root(), "Total Capital"));
  finishStart();
  EXPECT_EQ("$8,050.00", figure(root(), "Total Capital"));
}

TEST_F(PortfoliosAtTheStartTest, ANewPortfolioHasAllOthersBroughtUpToDate) {
  startTree();
  auto& element = records().portfolios().add();
  element.setPortfolioName(u"New");
  root().openPortfolio(std::make_unique<SharePortfolioUser>(element, gatewayPrices()));
  settle();
  EXPECT_TRUE(root().isComplete());
  EXPECT_EQ("$7,950.00", figure(root(), "Total Capital"));
}

TEST_F(PortfoliosAtTheStartTest, AWatchlistKnowsNoCapitalBefore) {
  startTree();
  makeLists();
  EXPECT_EQ(std::nullopt, lists().capitalOf(String()));
  EXPECT_EQ(std::nullopt, lists().capitalOf(u"Trading"));
  EXPECT_TRUE(root().bringNextUpToDate());
  EXPECT_EQ(std::nullopt, lists().capitalOf(String()));
  EXPECT_EQ(2650.0, lists().capitalOf(u"Savings"));
  finishStart();
  EXPECT_EQ(7950.0, lists().capitalOf(String()));
}

TEST_F(PortfoliosAtTheStartTest, WrongDatesAreToldWhenTheirPortfolioComes) {
  for (const char16_t* name : {u"Savings", u"Trading"}) {
    SharePortfolioUser& user = *portfolios()[name];
    user.receiveDividend({u"AAA.AX", Date(2026, 3, 2), 10.0, 0.1, 0, 0.0, 0.0, String(), 0.0});
    user.portfolio().dividends()[0].subElement(u"ReceiveDate").setValue(u"4/3/2026");
  }
  startTree();
  EXPECT_TRUE(boxes().empty());
  const auto fault = [](const std::string& name) {
    return "Portfolio " + name +
           " has a dividend for \nAAA.AX\nthat is in the future, and must be corrected.";
  };
  answer(fault("Savings"), "OK");
  EXPECT_TRUE(root().bringNextUpToDate());
  answer(fault("Trading"), "OK");
  finishStart();
  EXPECT_THAT(boxes(), ElementsAre(fault("Savings"), fault("Trading")));
  tree().updateItems();
  settle();
  EXPECT_EQ(2u, boxes().size()) << "told once";
}

TEST_F(PortfoliosAtTheStartTest, LimitsAreLookedAtLast) {
  portfolios()[u"Trading"]->setMinMax(*portfolios()[u"Trading"]->findHeldShare(u"AAA.AX"), 7.0, 8.0);
  addList(u"Main", {u"AAA.AX"});
  startTree();
  makeLists();
  EXPECT_TRUE(window().warnings.empty());
  EXPECT_TRUE(root().bringNextUpToDate());
  EXPECT_TRUE(root().bringNextUpToDate());
  EXPECT_TRUE(root().isComplete());
  EXPECT_TRUE(window().warnings.empty());
  finishStart();
  EXPECT_EQ(1u, window().warnings.size());
  EXPECT_TRUE(lists().checkNextLimit());
  while (lists().checkNextLimit()) {
  }
}

} // namespace
