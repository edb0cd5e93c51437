#include "ViewsTest.h"
#include "foundation/LengthyFunctions.h"
#include "views/HeldShareCells.h"
#include "views/PerformanceView.h"
#include "views/PortfolioPerformanceTable.h"
#include "views/SummaryFrame.h"

using namespace Tallymoor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class NotedProgress : public Progress {
public:
  void setTotal(unsigned) override {}
  void step(unsigned increment, const String& text) override {
    steps += increment;
    texts.push_back(text.toUTF8());
  }
  void setText(const String& text) override { texts.push_back(text.toUTF8()); }
  bool isCancelled() const override { return false; }

  unsigned steps = 0;
  std::vector<std::string> texts;
};

class TotalCapTreeItemTest : public ViewsTest {
protected:
  std::vector<std::string> shownInSummary() { return labels(*find<SummaryFrame>(*root().page())); }
  /// Creates a portfolio by the popup's command and its prompt.
  void makePortfolio(const std::string& name, const std::function<void()>& expected = {}) {
    choose(root(), "New Share Portfolio...", [this, name, expected] {
      whenModal("Please enter the name for your new portfolio.", [this, name](FXWindow& dialog) {
        EXPECT_EQ("New Portfolio", title(dialog));
        type(*find<FXTextField>(dialog), name);
        press(dialog, "OK");
      });
      if (expected)
        expected();
    });
  }
};

TEST_F(TotalCapTreeItemTest, AddsThePortfoliosUp) {
  addTrading();
  addPortfolio(u"Savings", 2650.0);
  showTree();
  EXPECT_EQ("Total Investment Capital", root().label().toUTF8());
  EXPECT_THAT(childLabels(root()), ElementsAre("Savings", "Trading"));
  EXPECT_EQ("$5,300.00", figure(root(), "Capital in Trading"));
  EXPECT_EQ("$2,650.00", figure(root(), "Capital in Savings"));
  EXPECT_EQ("$7,950.00", figure(root(), "Total Capital"));
  // 2.9126% of 5,300.00 and 5.4726%, related to 7,950.00.
  EXPECT_EQ("1.94%", figure(root(), "Gain today"));
  EXPECT_EQ("3.65%", figure(root(), "Gain this week"));
  const auto shown = labels(*root().page());
  EXPECT_THAT(shown, testing::IsSupersetOf({"33.33%", "66.67%"}));
  EXPECT_EQ(2, std::count(shown.begin(), shown.end(), "Percentage"));
  EXPECT_EQ(&root(), tree().shownItem());
  EXPECT_TRUE(root().isExpanded());
}

TEST_F(TotalCapTreeItemTest, ShowsZeroWithoutPortfolios) {
  showTree();
  EXPECT_THAT(shownInSummary(),
              ElementsAre("Total Capital", "$0.00", "Gain today", "0.00%", "Gain this week", "0.00%"));
}

TEST_F(TotalCapTreeItemTest, TotalOfZeroHasNoRowsForPortfolios) {
  addPortfolio(u"Empty");
  addPortfolio(u"Owing", 50.0).debitCash(Date(2026, 3, 1), 50.0, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL all");
  showTree();
  EXPECT_THAT(shownInSummary(),
              ElementsAre("Total Capital", "$0.00", "Gain today", "0.00%", "Gain this week", "0.00%"));
}

TEST_F(TotalCapTreeItemTest, SumsAreToTheCent) {
  addPortfolio(u"A", 16777217.01); // Exceeds single precision.
  addPortfolio(u"B", 1.0);
  showTree();
  EXPECT_EQ("$16,777,217.01", figure(root(), "Capital in A"));
  EXPECT_EQ("$16,777,218.01", figure(root(), "Total Capital"));
  EXPECT_THAT(labels(*root().page()), testing::Contains("100.00%"));
}

TEST_F(TotalCapTreeItemTest, FractionsOfCentsAddUpToTheSameFigureEverywhere) {
  buy(addPortfolio(u"Half", 1000.0), u"HLF.AX", 100000, 0.005);
  // More cents than 32 bits can hold, from two stocks whose prices have fractions of a cent.
  SharePortfolioUser& large = addPortfolio(u"Large", 60000000.0);
  buy(large, u"AAA.AX", 5000000000, 0.0055);
  buy(large, u"BBB.AX", 333333, 0.0035);
  showTree();
  const auto expectFigures = [this] {
    for (const auto& [name, shares, capital] : {std::tuple{u"Half", "$500.00", "$1,000.00"},
                                                std::tuple{u"Large", "$27,501,166.67", "$60,000,000.00"}}) {
      SCOPED_TRACE(shares);
      EXPECT_EQ(shares, figure(node(name), "Capital in shares"));
      EXPECT_EQ(shares, total(held(name), &HeldShareCells::currentValue));
      EXPECT_EQ(capital, figure(node(name), "Total Capital"));
      EXPECT_EQ(capital, figure(root(), "Capital in " + String(name).toUTF8()));
      EXPECT_EQ(capital, cellText(node(name).performance()->table(), 0, u"Total Capital"));
    }
    EXPECT_EQ("$60,001,000.00", figure(root(), "Total Capital"));
    EXPECT_EQ("$60,001,000.00", cellText(root().performance()->table(), 0, u"Total Capital"));
  };
  expectFigures();
  viewDate(Date(2026, 2, 27));
  expectFigures();
  viewDate(Date(2026, 3, 2));
  Date::clearFixedDate();
  tree().updateItems();
  runPass();
  expectFigures();
}

TEST_F(TotalCapTreeItemTest, RowsComeWhenPricesMakeTheTotalPositive) {
  SharePortfolioUser& user = addPortfolio(u"Gift");
  market().setHistory(u"AAA.AX", Date(2026, 1, 20), Date(2026, 3, 3), 1.0);
  user.buyShares(u"AAA.AX", {Date(2026, 3, 3), 10, 1.0, 5.0, String()});
  showTree();
  EXPECT_EQ("-$5.00", figure(root(), "Total Capital"));
  EXPECT_EQ("no Capital in Gift", figure(root(), "Capital in Gift"));
  market().setCurrentPrice(u"AAA.AX", 2.0);
  runPass();
  EXPECT_EQ("$5.00", figure(root(), "Capital in Gift"));
  EXPECT_EQ("$5.00", figure(root(), "Total Capital"));
}

TEST_F(TotalCapTreeItemTest, ProgressHearsOfEachPortfolio) {
  addPortfolio(u"Zoo");
  addPortfolio(u"Ark");
  NotedProgress progress;
  showTree({}, &progress);
  EXPECT_THAT(progress.texts, ElementsAre("Loading Ark", "Loading Zoo"));
  EXPECT_EQ(2u, progress.steps);
}

TEST_F(TotalCapTreeItemTest, NodesTakeTheirIcons) {
  FXIcon portfolio(&app(), nullptr, 0, IMAGE_OWNED, 16, 16);
  FXIcon sharesHeld(&app(), nullptr, 0, IMAGE_OWNED, 16, 16);
  portfolio.create();
  sharesHeld.create();
  addTrading();
  showTree({&portfolio, &sharesHeld});
  EXPECT_EQ(&portfolio, node(u"Trading").getOpenIcon());
  EXPECT_EQ(&portfolio, node(u"Trading").getClosedIcon());
  EXPECT_EQ(&sharesHeld, held(u"Trading").getOpenIcon());
  EXPECT_EQ(nullptr, purchases(u"Trading", u"AAA.AX")->getOpenIcon());
  EXPECT_EQ(nullptr, root().getOpenIcon());
  deleteWindow();
}

// ---- New portfolios ----

TEST_F(TotalCapTreeItemTest, PopupOffersANewPortfolio) {
  showTree();
  EXPECT_THAT(popupOf(root(), "New Share Portfolio..."), ElementsAre("New Share Portfolio..."));
}

TEST_F(TotalCapTreeItemTest, NewPortfolioIsShownInItsPlace) {
  addTrading();
  showTree();
  EXPECT_FALSE(root().takePortfoliosChanged());
  makePortfolio("Savings");
  EXPECT_THAT(childLabels(root()), ElementsAre("Savings", "Trading"));
  EXPECT_THAT(childLabels(node(u"Savings")),
              ElementsAre("Shares Held", "Shares Sold", "Dividends Received", "Cash Reserve"));
  EXPECT_EQ(&node(u"Savings"), tree().shownItem());
  EXPECT_EQ(tree().getCurrentItem(), &node(u"Savings"));
  ASSERT_EQ(2u, records().numSubElements(u"SharePortfolios"));
  EXPECT_EQ(&records().subElement(u"SharePortfolios", 1), &portfolios()[u"Savings"]->portfolio());
  EXPECT_EQ("$0.00", figure(root(), "Capital in Savings"));
  EXPECT_TRUE(root().takePortfoliosChanged());
  EXPECT_FALSE(root().takePortfoliosChanged());
}

TEST_F(TotalCapTreeItemTest, TakenNameIsRefused) {
  addTrading();
  showTree();
  makePortfolio("Trading", [this] { answer("There is already another portfolio with this name!", "OK"); });
  EXPECT_EQ(1u, records().numSubElements(u"SharePortfolios"));
  EXPECT_EQ("$5,300.00", figure(node(u"Trading"), "Total Capital"));
  EXPECT_FALSE(root().takePortfoliosChanged());
}

TEST_F(TotalCapTreeItemTest, CancelMakesNothing) {
  showTree();
  choose(root(), "New Share Portfolio...",
         [this] { whenModal("New Portfolio", [this](FXWindow& dialog) { press(dialog, "Cancel"); }); });
  EXPECT_EQ(0u, records().numSubElements(u"SharePortfolios"));
}

TEST_F(TotalCapTreeItemTest, NameIsCleaned) {
  showTree();
  makePortfolio("R&D/\"x\"");
  EXPECT_THAT(childLabels(root()), ElementsAre("RDx"));
}

TEST_F(TotalCapTreeItemTest, FailuresOfCommandsAreReported) {
  showTree();
  choose(root(), "New Share Portfolio...", [this] {
    failInside("New Portfolio");
    answer("TotalCapTreeItem::onNewSharePortfolio failed. Exception : test", "OK");
  });
  failInside("New Share Portfolio...");
  answer("TotalCapTreeItem::onRightClick failed. Exception : test", "OK");
  root().onRightClick(100, 100);
}

// ---- Imported portfolios ----

TEST_F(TotalCapTreeItemTest, ReloadingKeepsWhatIsShownAndOpen) {
  addTrading();
  showTree();
  tree().expandTree(&held(u"Trading"));
  leftClick(*purchases(u"Trading", u"AAA.AX"));
  addPortfolio(u"Imported", 1000.0);
  root().reloadPortfolios();
  EXPECT_THAT(childLabels(root()), ElementsAre("Imported", "Trading"));
  EXPECT_EQ(purchases(u"Trading", u"AAA.AX"), tree().shownItem());
  EXPECT_TRUE(held(u"Trading").isExpanded());
  EXPECT_TRUE(node(u"Trading").isExpanded());
  EXPECT_FALSE(node(u"Imported").isExpanded());
  EXPECT_EQ("$1,000.00", figure(root(), "Capital in Imported"));
  EXPECT_TRUE(root().takePortfoliosChanged());
}

TEST_F(TotalCapTreeItemTest, ReloadingMayShowOnePortfolio) {
  addTrading();
  showTree();
  addPortfolio(u"Imported", 1000.0);
  root().reloadPortfolios(u"Imported");
  EXPECT_EQ(&node(u"Imported"), tree().shownItem());
}

TEST_F(TotalCapTreeItemTest, PageOfADeletedPortfolioGivesWayToTheRoot) {
  addTrading();
  addPortfolio(u"Another");
  showTree();
  leftClick(held(u"Trading"));
  root().removeChild(&node(u"Trading"));
  EXPECT_EQ(&root(), tree().shownItem());
  leftClick(held(u"Another"));
  addPortfolio(u"Aardvark");
  root().reloadPortfolios();
  EXPECT_EQ(&held(u"Another"), tree().shownItem());
  EXPECT_EQ(tree().switcher()->childAtIndex(tree().switcher()->getCurrent()), held(u"Another").page());
}

} // namespace
