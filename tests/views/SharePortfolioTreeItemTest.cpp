#include "ViewsTest.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "widgets/HandlerScope.h"

using namespace Tallymoor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SharePortfolioTreeItemTest : public ViewsTest {
protected:
  /// Puts the prices of "Trading" into the cache.
  static void priceOffline() {
    for (Date day(2026, 2, 1); day <= Date(2026, 3, 3); day.addDays(1))
      TallymoorInternet::Instance().setCachedPrice(u"AAA.AX", day,
                                                   day < Date(2026, 2, 16)  ? 10.0
                                                   : day < Date(2026, 3, 2) ? 5.5
                                                                            : 6.0);
    TallymoorInternet::Instance().setCachedPrice(u"AAA.AX", Date(2026, 3, 3), 6.6);
  }
  void index(double yesterday, double today) {
    market().setHistory(u"^IDX", Date(2026, 1, 20), Date(2026, 2, 27), 4000.0);
    market().setDay(u"^IDX", Date(2026, 3, 2), yesterday);
    market().setDay(u"^IDX", Date(2026, 3, 3), today);
  }
  /// Covers the moving averages. 4,000.00 except for yesterday and today.
  void longIndex(double yesterday, double today) {
    market().setHistory(u"^IDX", Date(2025, 11, 3), Date(2026, 1, 19), 4000.0);
    index(yesterday, today);
  }
  FXButton& setIndexButton(const String& name) {
    return dynamic_cast<FXButton&>(button(*node(name).page(), " set index "));
  }
  /// The label after the button "set index"; null if there is none.
  FXLabel* trend(const String& name) { return dynamic_cast<FXLabel*>(setIndexButton(name).getNext()); }
  std::string trendText(const String& name) {
    return trend(name) ? trend(name)->getText().text() : "no trend";
  }
  /// Fills in the form for name and index.
  void enterProperties(const std::string& name, const std::string& index) {
    whenModal("Portfolio Properties", [=, this](FXWindow& dialog) {
      type(field(dialog, "Name"), name);
      type(field(dialog, "Comparison Index"), index);
      press(dialog, "OK");
    });
  }
};

TEST_F(SharePortfolioTreeItemTest, SummaryShowsCapitalAndGains) {
  addTrading();
  showTree();
  SharePortfolioTreeItem& trading = node(u"Trading");
  EXPECT_EQ("$1,650.00", figure(trading, "Capital in shares"));
  EXPECT_EQ("31.13%", figure(trading, "Percent in shares"));
  EXPECT_EQ("$3,650.00", figure(trading, "Capital in cash"));
  EXPECT_EQ("68.87%", figure(trading, "Percent in cash"));
  EXPECT_EQ("$5,300.00", figure(trading, "Total Capital"));
  EXPECT_EQ("2.91% (n/a)", figure(trading, "Gain today (index)"));     // Of 5,150.00.
  EXPECT_EQ("5.47% (n/a)", figure(trading, "Gain this week (index)")); // Of 5,025.00.
}

TEST_F(SharePortfolioTreeItemTest, GainsOfTheIndexStandBesideThePortfolios) {
  index(4100.0, 4182.0);
  addTrading().setComparisonIndex(u"^IDX");
  showTree();
  EXPECT_EQ("2.91% (2.00%)", figure(node(u"Trading"), "Gain today (index)"));
  EXPECT_EQ("5.47% (4.55%)", figure(node(u"Trading"), "Gain this week (index)"));
  EXPECT_TRUE(TallymoorInternet::Instance().priceUpdater().hasCode(u"^IDX"));
}

TEST_F(SharePortfolioTreeItemTest, IndexThatFailsLeavesThePortfoliosGains) {
  addTrading().setComparisonIndex(u"^BAD");
  TallymoorInternet::Instance().goOffline();
  priceOffline();
  showTree();
  EXPECT_EQ("2.91% (failed)", figure(node(u"Trading"), "Gain today (index)"));
  EXPECT_EQ("5.47% (failed)", figure(node(u"Trading"), "Gain this week (index)"));
  EXPECT_EQ("<index trend disabled>", trendText(u"Trading"));
}

TEST_F(SharePortfolioTreeItemTest, PriceOfTheIndexRefreshesItsGains) {
  index(4100.0, 4141.0);
  addTrading().setComparisonIndex(u"^IDX");
  showTree();
  market().setCurrentPrice(u"AAA.AX", 6.6);
  market().setCurrentPrice(u"^IDX", 4182.0);
  runPass();
  EXPECT_EQ("2.91% (2.00%)", figure(node(u"Trading"), "Gain today (index)"));
}

TEST_F(SharePortfolioTreeItemTest, WorthlessPortfolioHasPercentagesOfZero) {
  addPortfolio(u"Empty");
  showTree();
  SharePortfolioTreeItem& empty = node(u"Empty");
  EXPECT_EQ("0.00%", figure(empty, "Percent in shares"));
  EXPECT_EQ("0.00%", figure(empty, "Percent in cash"));
  EXPECT_EQ("$0.00", figure(empty, "Total Capital"));
  EXPECT_EQ("0.00% (n/a)", figure(empty, "Gain today (index)"));
}

TEST_F(SharePortfolioTreeItemTest, OverdrawnPortfolioHasPercentagesOfZero) {
  addPortfolio(u"Owing").debitCash(Date(2026, 3, 1), 50.0, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL all");
  showTree();
  EXPECT_EQ("-$50.00", figure(node(u"Owing"), "Total Capital"));
  EXPECT_EQ("0.00%", figure(node(u"Owing"), "Percent in cash"));
}

TEST_F(SharePortfolioTreeItemTest, PopupNamesThePortfolioAsItStands) {
  addPortfolio(u"A & B");
  showTree();
  EXPECT_THAT(popupOf(node(u"A & B"), "Buy shares..."),
              ElementsAre("Buy shares...", "Sell shares...", "Receive a dividend...", "Receive interest...",
                          "Deposit cash...", "Withdraw cash...", "Rename share portfolio A & B...",
                          "Delete share portfolio A & B...", "Set portfolio comparison index..."));
  EXPECT_EQ("A & B", node(u"A & B").label().toUTF8());
  EXPECT_TRUE(shows(*node(u"A & B").page(), "A & B"));
}

TEST_F(SharePortfolioTreeItemTest, BuyingShowsTheShareEverywhere) {
  addPortfolio(u"Trading", 5000.0);
  market().setHistory(u"AAA.AX", Date(2026, 1, 20), Date(2026, 3, 3), 4.0);
  showTree();
  leftClick(node(u"Trading"));
  choose(node(u"Trading"), "Buy shares...", [this] { enterPurchase("AAA.AX", "100", "4"); });
  EXPECT_EQ("$400.00", figure(node(u"Trading"), "Capital in shares"));
  EXPECT_EQ("$4,550.00", figure(node(u"Trading"), "Capital in cash"));
  EXPECT_EQ("$4,950.00", figure(root(), "Total Capital"));
  EXPECT_THAT(rowKeys(*held(u"Trading").table()), ElementsAre("AAA.AX"));
  EXPECT_THAT(childLabels(held(u"Trading")), ElementsAre("AAA.AX Purchases"));
  EXPECT_EQ(&node(u"Trading"), tree().shownItem());
  EXPECT_TRUE(root().takePortfoliosChanged());
}

TEST_F(SharePortfolioTreeItemTest, CancelledPurchaseChangesNothing) {
  addPortfolio(u"Trading", 5000.0);
  showTree();
  choose(node(u"Trading"), "Buy shares...",
         [this] { whenModal("Buy Shares", [this](FXWindow& dialog) { press(dialog, "Cancel"); }); });
  EXPECT_EQ("$5,000.00", figure(node(u"Trading"), "Total Capital"));
  EXPECT_FALSE(root().takePortfoliosChanged());
}

TEST_F(SharePortfolioTreeItemTest, HasItsFourNodesInTheirOrder) {
  addTrading();
  showTree();
  EXPECT_THAT(childLabels(node(u"Trading")),
              ElementsAre("Shares Held", "Shares Sold", "Dividends Received", "Cash Reserve"));
}

// ---- Sales, dividends and cash ----

TEST_F(SharePortfolioTreeItemTest, SellingShowsTheSaleEverywhere) {
  buy(addPortfolio(u"Trading", 5000.0), u"BBB.AX", 100, 4.0);
  showTree();
  leftClick(node(u"Trading"));
  choose(node(u"Trading"), "Sell shares...", [this] {
    whenModal("Sell Shares", [this](FXWindow& dialog) {
      find<FXComboBox>(dialog)->setCurrentItem(1, TRUE);
      type(field(dialog, "Number sold"), "40");
      press(dialog, "OK");
    });
  });
  // 40 at 4.00, less 50.00 of brokerage; 60 remain.
  EXPECT_EQ("$240.00", figure(node(u"Trading"), "Capital in shares"));
  EXPECT_EQ("$4,710.00", figure(node(u"Trading"), "Capital in cash"));
  EXPECT_EQ("$4,950.00", figure(root(), "Total Capital"));
  EXPECT_EQ("60.00", cellText(*held(u"Trading").table(), 0, u"Number"));
  EXPECT_THAT(rowKeys(*sold().table()), ElementsAre("03/03/2026"));
  EXPECT_EQ("$160.00", cellText(*sold().table(), 0, u"Gross Sale"));
  EXPECT_EQ("SELL 40.00 of BBB.AX @ 4.0000", cellText(*cash().table(), 2, u"Description"));
  EXPECT_EQ(&node(u"Trading"), tree().shownItem());
  EXPECT_TRUE(root().takePortfoliosChanged());
}

TEST_F(SharePortfolioTreeItemTest, FirstBoughtIsFirstSold) {
  addTrading();
  showTree();
  choose(node(u"Trading"), "Sell shares...", [this] {
    whenModal("Sell Shares", [this](FXWindow& dialog) {
      find<FXComboBox>(dialog)->setCurrentItem(1, TRUE);
      type(field(dialog, "Number sold"), "200");
      press(dialog, "OK");
    });
  });
  EXPECT_THAT(rowKeys(*purchases(u"Trading", u"AAA.AX")->table()), ElementsAre("20/02/2026"));
}

TEST_F(SharePortfolioTreeItemTest, DividendInCashIsPaidIn) {
  addTrading();
  showTree();
  choose(node(u"Trading"), "Receive a dividend...", [this] {
    whenModal("Receive a dividend", [this](FXWindow& dialog) {
      find<FXComboBox>(dialog)->setCurrentItem(1, TRUE);
      type(field(dialog, "Dividend Rate"), "0.10");
      press(dialog, "OK");
    });
  });
  EXPECT_THAT(rowKeys(*dividends().table()), ElementsAre("03/03/2026"));
  EXPECT_EQ("$25.00", cellText(*dividends().table(), 0, u"Value"));
  EXPECT_EQ("$3,675.00", figure(node(u"Trading"), "Capital in cash"));
  EXPECT_EQ("DIVIDEND AAA.AX @ 0.100000 x 250.00", cellText(*cash().table(), 3, u"Description"));
  EXPECT_TRUE(root().takePortfoliosChanged());
}

TEST_F(SharePortfolioTreeItemTest, ReinvestedDividendBuysShares) {
  addTrading();
  showTree();
  choose(node(u"Trading"), "Receive a dividend...", [this] {
    whenModal("Receive a dividend", [this](FXWindow& dialog) {
      find<FXComboBox>(dialog)->setCurrentItem(1, TRUE);
      type(field(dialog, "Dividend Rate"), "0.10");
      press(dialog, "Dividend reinvestment");
      type(field(dialog, "Shares received"), "4");
      type(field(dialog, "Share price"), "6.25");
      press(dialog, "OK");
    });
  });
  EXPECT_EQ("4.00 shares at 6.2500", cellText(*dividends().table(), 0, u"Received As"));
  EXPECT_EQ("254.00", cellText(*held(u"Trading").table(), 0, u"Number"));
  EXPECT_EQ("$3,650.00", figure(node(u"Trading"), "Capital in cash"));
}

TEST_F(SharePortfolioTreeItemTest, InterestDepositAndWithdrawalAreBooked) {
  addTrading();
  showTree();
  choose(node(u"Trading"), "Receive interest...",
         [this] { enterCash("Receive interest", "12.34", "February"); });
  choose(node(u"Trading"), "Deposit cash...", [this] { enterCash("Deposit cash", "1000", "salary"); });
  choose(node(u"Trading"), "Withdraw cash...", [this] { enterCash("Withdraw cash", "200.50", ""); });
  ASSERT_EQ(6u, numCashEntries());
  const std::vector<std::vector<std::string>> expected = {{"3", "12.34", "INTEREST February"},
                                                          {"4", "1000.00", "DEPOSIT salary"},
                                                          {"5", "200.50", "WITHDRAWAL "}};
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(expected[i][0], textValue(cashEntry(i + 3), u"Type").toUTF8());
    EXPECT_EQ(expected[i][1], textValue(cashEntry(i + 3), u"Value").toUTF8());
    EXPECT_EQ(expected[i][2], textValue(cashEntry(i + 3), u"Description").toUTF8());
    EXPECT_EQ("3/3/2026", textValue(cashEntry(i + 3), u"Date").toUTF8());
  }
  EXPECT_EQ("$4,461.84", figure(node(u"Trading"), "Capital in cash"));
  EXPECT_EQ("$6,111.84", figure(root(), "Total Capital"));
}

TEST_F(SharePortfolioTreeItemTest, CancelledFormsChangeNothing) {
  addTrading();
  showTree();
  const std::pair<std::string, std::string> forms[] = {{"Sell shares...", "Sell Shares"},
                                                       {"Receive a dividend...", "Receive a dividend"},
                                                       {"Receive interest...", "Receive interest"},
                                                       {"Deposit cash...", "Deposit cash"},
                                                       {"Withdraw cash...", "Withdraw cash"}};
  for (const auto& [entry, form] : forms)
    choose(node(u"Trading"), entry,
           [&] { whenModal(form, [this](FXWindow& dialog) { press(dialog, "Cancel"); }); });
  EXPECT_EQ(3u, numCashEntries());
  EXPECT_EQ("250.00", cellText(*held(u"Trading").table(), 0, u"Number"));
  EXPECT_FALSE(root().takePortfoliosChanged());
}

TEST_F(SharePortfolioTreeItemTest, CashFormsShowTheCashThatRemains) {
  addPortfolio(u"Trading", 5000.0);
  showTree();
  for (const auto& [entry, form, cash] : {std::tuple("Receive interest...", "Receive interest", "5100.00"),
                                          std::tuple("Deposit cash...", "Deposit cash", "5100.00"),
                                          std::tuple("Withdraw cash...", "Withdraw cash", "4900.00")})
    choose(node(u"Trading"), entry, [&, form = form, cash = cash] {
      whenModal(form, [this, cash](FXWindow& dialog) {
        type(field(dialog, "Amount"), "100");
        EXPECT_STREQ(cash, field(dialog, "Cash afterwards").getText().text());
        press(dialog, "Cancel");
      });
    });
}

TEST_F(SharePortfolioTreeItemTest, FailuresOfFormsAreReported) {
  addTrading();
  showTree();
  const std::vector<std::string> forms[] = {
      {"Sell shares...", "Sell Shares", "onSellShares"},
      {"Receive a dividend...", "Receive a dividend", "onReceiveDividends"},
      {"Receive interest...", "Receive interest", "onReceiveInterest"},
      {"Deposit cash...", "Deposit cash", "onDepositCash"},
      {"Withdraw cash...", "Withdraw cash", "onWithdrawCash"}};
  for (const auto& form : forms)
    choose(node(u"Trading"), form[0], [&] {
      failInside(form[1]);
      answer("SharePortfolioTreeItem::" + form[2] + " failed. Exception : test", "OK");
    });
}

// ---- The comparison index ----

TEST_F(SharePortfolioTreeItemTest, ButtonOfTheSummarySetsTheIndex) {
  longIndex(4100.0, 4182.0);
  addTrading();
  showTree();
  leftClick(node(u"Trading"));
  EXPECT_EQ("No index to compare with yet: \"set index\" chooses one.", trendText(u"Trading"));
  enterProperties("Trading", "^IDX");
  press(setIndexButton(u"Trading"));
  EXPECT_EQ(String(u"^IDX"), portfolios()[u"Trading"]->comparisonIndex());
  EXPECT_EQ("2.91% (2.00%)", figure(node(u"Trading"), "Gain today (index)"));
  EXPECT_EQ("Index trend: rising (10 day average 4018.18, 30 day 4006.45)", trendText(u"Trading"));
  EXPECT_TRUE(TallymoorInternet::Instance().priceUpdater().hasCode(u"^IDX"));
  EXPECT_EQ(&node(u"Trading"), tree().shownItem());
}

TEST_F(SharePortfolioTreeItemTest, EmptyCodeTakesTheIndexAway) {
  longIndex(4100.0, 4182.0);
  addTrading().setComparisonIndex(u"^IDX");
  showTree();
  choose(node(u"Trading"), "Set portfolio comparison index...", [this] { enterProperties("Trading", ""); });
  EXPECT_EQ(0u, records().subElement(u"SharePortfolios").numSubElements(u"ComparisonIndex"));
  EXPECT_EQ("2.91% (n/a)", figure(node(u"Trading"), "Gain today (index)"));
  EXPECT_EQ("No index to compare with yet: \"set index\" chooses one.", trendText(u"Trading"));
  EXPECT_FALSE(TallymoorInternet::Instance().priceUpdater().hasCode(u"^IDX"));
}

TEST_F(SharePortfolioTreeItemTest, AnotherIndexTakesThePlaceOfTheFirst) {
  longIndex(4100.0, 4182.0);
  market().setHistory(u"^TWO", Date(2025, 11, 3), Date(2026, 3, 3), 700.0);
  addTrading().setComparisonIndex(u"^IDX");
  showTree();
  choose(node(u"Trading"), "Set portfolio comparison index...",
         [this] { enterProperties("Trading", "^TWO"); });
  EXPECT_EQ(1u, records().subElement(u"SharePortfolios").numSubElements(u"ComparisonIndex"));
  EXPECT_EQ("2.91% (0.00%)", figure(node(u"Trading"), "Gain today (index)"));
  EXPECT_EQ("Index trend: steady (10 day average 700.00, 30 day 700.00)", trendText(u"Trading"));
  EXPECT_FALSE(TallymoorInternet::Instance().priceUpdater().hasCode(u"^IDX"));
}

TEST_F(SharePortfolioTreeItemTest, PropertiesRenameThePortfolioToo) {
  longIndex(4100.0, 4182.0);
  addTrading();
  showTree();
  leftClick(node(u"Trading"));
  choose(node(u"Trading"), "Set portfolio comparison index...",
         [this] { enterProperties("Savings", "^IDX"); });
  EXPECT_THAT(childLabels(root()), ElementsAre("Savings"));
  EXPECT_EQ(String(u"^IDX"), portfolios()[u"Savings"]->comparisonIndex());
  EXPECT_EQ(&node(u"Savings"), tree().shownItem());
  EXPECT_TRUE(root().takePortfoliosChanged());
}

TEST_F(SharePortfolioTreeItemTest, NameThatIsTakenIsRefusedInTheProperties) {
  addTrading();
  addPortfolio(u"Another");
  showTree();
  choose(node(u"Trading"), "Set portfolio comparison index...", [this] {
    whenModal("Portfolio Properties", [this](FXWindow& dialog) {
      type(field(dialog, "Name"), "Another");
      answer("There is already another portfolio with this name!", "OK");
      press(dialog, "OK");
      EXPECT_TRUE(dialog.shown());
      press(dialog, "Cancel");
    });
  });
  EXPECT_THAT(childLabels(root()), ElementsAre("Another", "Trading"));
}

TEST_F(SharePortfolioTreeItemTest, FailureOfTheRenameKeepsTheNewIndex) {
  addTrading();
  showTree();
  TestProfile::writeFile(profile().dataFolder() + u"SavingsCapRecord.xml/in the way", "");
  index(4100.0, 4182.0);
  std::string box;
  choose(node(u"Trading"), "Set portfolio comparison index...", [&] {
    enterProperties("Savings", "^IDX");
    whenModal("SharePortfolioTreeItem::onProperties failed.", [&](FXWindow& message) {
      box = labels(message).front();
      press(message, "OK");
    });
  });
  EXPECT_THAT(childLabels(root()), ElementsAre("Trading"));
  EXPECT_EQ("2.91% (2.00%)", figure(node(u"Trading"), "Gain today (index)"));
}

TEST_F(SharePortfolioTreeItemTest, CancelledPropertiesChangeNothing) {
  addTrading();
  showTree();
  choose(node(u"Trading"), "Set portfolio comparison index...", [this] {
    whenModal("Portfolio Properties", [this](FXWindow& dialog) {
      type(field(dialog, "Name"), "Another");
      type(field(dialog, "Comparison Index"), "^IDX");
      press(dialog, "Cancel");
    });
  });
  EXPECT_THAT(childLabels(root()), ElementsAre("Trading"));
  EXPECT_FALSE(portfolios()[u"Trading"]->hasComparisonIndex());
}

TEST_F(SharePortfolioTreeItemTest, FallingIndexIsCalledFalling) {
  longIndex(3900.0, 4182.0);
  addTrading().setComparisonIndex(u"^IDX");
  showTree();
  EXPECT_EQ("Index trend: falling (10 day average 3981.82, 30 day 3993.55)", trendText(u"Trading"));
  EXPECT_STREQ("^IDX is falling: its average of the last 10 weekdays is 3981.82, that of the last 30 is "
               "3993.55.\nRecent days weigh more in both (exponential averages).",
               trend(u"Trading")->getTipText().text());
}

TEST_F(SharePortfolioTreeItemTest, PeriodsOfTheTrendAreTheUsers) {
  longIndex(4100.0, 4182.0);
  indexTrendShort = 4.9; // The fraction is truncated.
  indexTrendLong = 19.0;
  addTrading().setComparisonIndex(u"^IDX");
  showTree();
  EXPECT_EQ("Index trend: rising (4 day average 4040.00, 19 day 4010.00)", trendText(u"Trading"));
  readSettings();
}

TEST_F(SharePortfolioTreeItemTest, IndexTooYoungForATrendStillShowsItsGains) {
  index(4100.0, 4182.0);
  addTrading().setComparisonIndex(u"^IDX");
  showTree();
  EXPECT_EQ("2.91% (2.00%)", figure(node(u"Trading"), "Gain today (index)"));
  EXPECT_EQ("<index trend disabled>", trendText(u"Trading"));
  EXPECT_STREQ("The prices of ^IDX that its moving averages need are unavailable.",
               trend(u"Trading")->getTipText().text());
}

// ---- Renaming ----

TEST_F(SharePortfolioTreeItemTest, RenamingTakesRecordsFileTreeAndTrayAlong) {
  addTrading();
  addPortfolio(u"Another");
  trayFormat = u"Trading";
  showTree();
  portfolios()[u"Trading"]->capitalRecord().save();
  leftClick(held(u"Trading"));
  choose(node(u"Trading"), "Rename share portfolio Trading...", [this] {
    whenModal("Please choose a new name for Trading", [this](FXWindow& dialog) {
      EXPECT_EQ("Rename portfolio", title(dialog));
      type(*find<FXTextField>(dialog), "Savings");
      press(dialog, "OK");
    });
  });
  EXPECT_THAT(childLabels(root()), ElementsAre("Another", "Savings"));
  EXPECT_FALSE(portfolios().contains(u"Trading"));
  EXPECT_EQ(String(u"Savings"), portfolios()[u"Savings"]->name());
  EXPECT_EQ(String(u"Savings"), records().subElement(u"SharePortfolios", 0).subElement(u"Name").value());
  EXPECT_TRUE(TestProfile::fileExists(profile().dataFolder() + u"SavingsCapRecord.xml"));
  EXPECT_FALSE(TestProfile::fileExists(profile().dataFolder() + u"TradingCapRecord.xml"));
  EXPECT_EQ(String(u"Savings"), trayFormat);
  EXPECT_EQ(String(u"Savings"), Settings::Instance().readString(u"Operation", u"TrayFormat"));
  EXPECT_EQ(&held(u"Savings"), tree().shownItem());
  EXPECT_EQ("$5,300.00", figure(node(u"Savings"), "Total Capital"));
  EXPECT_TRUE(root().takePortfoliosChanged());
  trayFormat = String();
}

TEST_F(SharePortfolioTreeItemTest, RenamingToTheSameNameDoesNothing) {
  addTrading();
  showTree();
  const SharePortfolioTreeItem* before = &node(u"Trading");
  root().renamePortfolio(u"Trading", u"Trading");
  root().renamePortfolio(u"Trading", u"<>");
  root().renamePortfolio(u"Unknown", u"Other");
  EXPECT_EQ(before, &node(u"Trading"));
  EXPECT_FALSE(root().takePortfoliosChanged());
}

TEST_F(SharePortfolioTreeItemTest, RenamingToATakenNameIsRefused) {
  addTrading();
  addPortfolio(u"Another");
  showTree();
  answer("There is already another portfolio with this name!", "OK");
  root().renamePortfolio(u"Trading", u"Another");
  EXPECT_THAT(childLabels(root()), ElementsAre("Another", "Trading"));
}

TEST_F(SharePortfolioTreeItemTest, RenamingKeepsMarkupAndPathsOut) {
  addTrading();
  showTree();
  root().renamePortfolio(u"Trading", u"../<R&D>");
  EXPECT_THAT(childLabels(root()), ElementsAre("..RD"));
}

TEST_F(SharePortfolioTreeItemTest, FileThatCannotBeWrittenLeavesTheOldName) {
  addTrading();
  showTree();
  TestProfile::writeFile(profile().dataFolder() + u"SavingsCapRecord.xml/in the way", "");
  EXPECT_THROW(root().renamePortfolio(u"Trading", u"Savings"), Exception);
  EXPECT_EQ(String(u"Trading"), portfolios()[u"Trading"]->name());
  EXPECT_THAT(childLabels(root()), ElementsAre("Trading"));
}

// ---- Deleting ----

TEST_F(SharePortfolioTreeItemTest, DeletingFromItsOwnPopupTakesEverythingAndShowsTheRoot) {
  addTrading();
  addPortfolio(u"Another", 100.0);
  showTree();
  portfolios()[u"Trading"]->capitalRecord().save();
  leftClick(*purchases(u"Trading", u"AAA.AX"));
  choose(node(u"Trading"), "Delete share portfolio Trading...",
         [this] { answer("Are you sure you want to delete share portfolio Trading?", "Yes"); });
  EXPECT_EQ(&root(), tree().shownItem());
  EXPECT_EQ(tree().getCurrentItem(), &root());
  EXPECT_THAT(childLabels(root()), ElementsAre("Another"));
  EXPECT_EQ(1u, portfolios().size());
  ASSERT_EQ(1u, records().numSubElements(u"SharePortfolios"));
  EXPECT_EQ(String(u"Another"), records().subElement(u"SharePortfolios").subElement(u"Name").value());
  EXPECT_FALSE(TestProfile::fileExists(profile().dataFolder() + u"TradingCapRecord.xml"));
  EXPECT_EQ("$100.00", figure(root(), "Total Capital"));
  EXPECT_FALSE(TallymoorInternet::Instance().priceUpdater().hasCode(u"AAA.AX"));
  EXPECT_TRUE(root().takePortfoliosChanged());
  runPass(); // Deleted nodes get no prices.
}

TEST_F(SharePortfolioTreeItemTest, RootIsShownBeforeTheNodeGoes) {
  addTrading();
  showTree();
  leftClick(node(u"Trading"));
  const HandlerScope handler;
  answer("Are you sure you want to delete share portfolio Trading?", "Yes");
  node(u"Trading")
      .handle(nullptr, FXSEL(SEL_COMMAND, SharePortfolioTreeItem::ID_DELETE_SHARE_PORTFOLIO), nullptr);
  EXPECT_EQ(&root(), tree().shownItem());
  EXPECT_THAT(childLabels(root()), ElementsAre("Trading"));
}

TEST_F(SharePortfolioTreeItemTest, NothingIsDeletedAtNo) {
  addTrading();
  showTree();
  leftClick(node(u"Trading"));
  choose(node(u"Trading"), "Delete share portfolio Trading...",
         [this] { answer("Are you sure you want to delete share portfolio Trading?", "No"); });
  EXPECT_THAT(childLabels(root()), ElementsAre("Trading"));
  EXPECT_EQ(&node(u"Trading"), tree().shownItem());
}

TEST_F(SharePortfolioTreeItemTest, OnlyTheRootLosesChildren) {
  addTrading();
  showTree();
  try {
    node(u"Trading").removeChild(&held(u"Trading"));
    FAIL() << "nothing was thrown";
  } catch (const Exception& exception) {
    EXPECT_EQ(String(u"InvestmentTreeItem::removeChild"), exception.message());
  }
}

TEST_F(SharePortfolioTreeItemTest, FailuresOfCommandsAreReported) {
  addTrading();
  showTree();
  choose(node(u"Trading"), "Buy shares...", [this] {
    failInside("Buy Shares");
    answer("SharePortfolioTreeItem::onBuyShares failed. Exception : test", "OK");
  });
  choose(node(u"Trading"), "Rename share portfolio Trading...", [this] {
    failInside("Please choose a new name for Trading");
    answer("SharePortfolioTreeItem::onRenamePortfolio failed. Exception : test", "OK");
  });
  choose(node(u"Trading"), "Delete share portfolio Trading...", [this] {
    failInside("Are you sure you want to delete share portfolio Trading?");
    answer("SharePortfolioTreeItem::onDeleteSharePortfolio failed. Exception : test", "OK");
  });
  choose(node(u"Trading"), "Set portfolio comparison index...", [this] {
    failInside("Portfolio Properties");
    answer("SharePortfolioTreeItem::onProperties failed. Exception : test", "OK");
  });
  failInside("Buy shares...");
  answer("SharePortfolioTreeItem::onRightClick failed. Exception : test", "OK");
  node(u"Trading").onRightClick(100, 100);
  EXPECT_THAT(childLabels(root()), ElementsAre("Trading"));
}

// ---- Today's record ----

TEST_F(SharePortfolioTreeItemTest, FiguresStayAfterMidnightUntilTheUsersNextAction) {
  addTrading();
  showTree();
  node(u"Trading").page(); // has been made
  profile().setToday(Date(2026, 3, 4));
  market().setDay(u"AAA.AX", Date(2026, 3, 4), 7.0);
  market().setCurrentPrice(u"AAA.AX", 7.0);
  runPass();
  EXPECT_EQ("$5,300.00", figure(node(u"Trading"), "Total Capital"));
  EXPECT_EQ("$5,300.00", figure(root(), "Total Capital"));
  leftClick(root());
  EXPECT_EQ("$5,400.00", figure(root(), "Total Capital"));
  leftClick(held(u"Trading"));
  EXPECT_EQ("$1,750.00", cellText(*held(u"Trading").table(), 0, u"Current Value"));
}

TEST_F(SharePortfolioTreeItemTest, NegativeCashIsWarnedOf) {
  addPortfolio(u"Owing").debitCash(Date(2026, 3, 1), 50.0, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL all");
  showTree();
  ASSERT_FALSE(window().warnings.empty());
  EXPECT_EQ(String(u"OwingCRW"), window().warnings.front().key);
}

} // namespace
