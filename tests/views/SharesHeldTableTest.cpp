#include "ViewsTest.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "market/StockNames.h"
#include "views/HeldShareCells.h"
#include "views/IndicatorCells.h"
#include "views/PriceHistoryTable.h"
#include "widgets/ChartView.h"
#include "widgets/Colours.h"
#include "xml/Leaves.h"

using namespace Tallymoor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SharesHeldTableTest : public ViewsTest {
protected:
  SharesHeldTable& table() { return *held(u"Trading").table(); }
  XMLHeldShare& share(const String& code) { return *portfolios()[u"Trading"]->findHeldShare(code); }
  void limits(double min, double max) { portfolios()[u"Trading"]->setMinMax(share(u"AAA.AX"), min, max); }
  const std::string deletion = "Warning! Deleting this share will affect the Total Capital.\n If you sold "
                               "this share, use the \"Sell Share\" "
                               "menu. \nThis action should only be used to correct a mistake. \n";
  static constexpr FXColor RED = FXRGB(255, 175, 175);
  static constexpr FXColor GREEN = FXRGB(175, 255, 175);
};

TEST_F(SharesHeldTableTest, DeclaresItsColumnsInOrder) {
  addTrading();
  showTree();
  EXPECT_THAT(titles(table()),
              ElementsAre("Name", "Number", "Buy Price", "Price Now", "Purchase Value", "Current Value",
                          "Day Move", "Day Gain", "Day %", "Week %", "Month %", "Gain %", "Annualised Gain %",
                          "Gross Gain $", "Auto Min/Max", "Price Min/Max", "% in Min/Max", "Portfolio %",
                          "Days Held", "LR Value", "LR Rate", "Av. True Range"));
  const std::vector<int> compares = {0, 5, 3, 3, 3, 3, 3, 3, 4, 4, 4, 4, 4, 3, 0, 0, 4, 4, 5, 3, 4, 3};
  const std::set<String> hidden = {u"LR Value", u"LR Rate", u"Av. True Range"};
  for (std::size_t i = 0; i < compares.size(); ++i) {
    const Column& column = *table().columns()[i];
    EXPECT_EQ(compares[i], column.compareType()) << column.title().toUTF8();
    EXPECT_EQ(i == 0 ? FXuint(FXTableItem::LEFT) : FXuint(FXTableItem::RIGHT), column.justify());
    EXPECT_EQ(!hidden.contains(column.title()), column.defaultVisible());
    EXPECT_EQ(column.title() == u"Price Now" || column.title() == u"Price Min/Max", column.editable());
  }
  EXPECT_EQ(String(u"Set your minimum and maximum prices for holding this share. Press F2 to edit."),
            table().getColumn(&HeldShareCells::priceMinMax).toolTip());
  EXPECT_EQ(String(u"Min/Max calculated as a multple of the ATR above and below the LR Value"),
            table().getColumn(&IndicatorCells::autoMinMax).toolTip());
  EXPECT_EQ(String(u"Value now of the linear regression line of recent weekly values"),
            table().getColumn(&IndicatorCells::lrValue).toolTip());
  EXPECT_EQ(String(u"Annualised percentage increase of the 'LR Value' now against six months ago."),
            table().getColumn(&IndicatorCells::lrRate).toolTip());
  EXPECT_EQ(String(u"Average of the recent weekly true range"),
            table().getColumn(&IndicatorCells::averageTrueRange).toolTip());
  EXPECT_EQ(String(u"Shares Held Table"), table().name());
}

TEST_F(SharesHeldTableTest, DayWithoutARecordGivesAnEmptyTableAndTotalsOfZero) {
  addTrading();
  showTree();
  viewDate(Date(2026, 1, 15));
  EXPECT_EQ(0, table().getNumRows());
  EXPECT_EQ(String(u"No shares were held on the day shown."), table().shownEmptyText());
  const TotalsBar& totals = *held(u"Trading").totalsBar();
  EXPECT_STREQ("$0.00", totals.total(&HeldShareCells::currentValue)->getText().text());
  EXPECT_STREQ("$0.00", totals.total(&HeldShareCells::purchaseValue)->getText().text());
  EXPECT_STREQ("$0.00", totals.total(&HeldShareCells::grossGain)->getText().text());
  EXPECT_STREQ("$0.00", totals.total(&HeldShareCells::dayGain)->getText().text());
  EXPECT_STREQ("0.00%", totals.total(&HeldShareCells::portfolioPercent)->getText().text());
  EXPECT_STREQ("0.00%", totals.total(&HeldShareCells::dayPercent)->getText().text());
}

TEST_F(SharesHeldTableTest, AnUncomputedDayIsNotTreatedAsADayWithoutShares) {
  SharePortfolioUser& user = addTrading();
  showTree();
  user.capitalRecord().recordsChangedFrom(Date(2026, 3, 1)); // As after a cancelled recomputation.
  table().updateTable();
  EXPECT_EQ(String(u"This day has not been computed, since that was cancelled.\nClick \"Shares Held\" in the "
                   u"tree to have it done."),
            table().shownEmptyText());
  leftClick(held(u"Trading"));
  EXPECT_EQ(String(), table().shownEmptyText());
}

TEST_F(SharesHeldTableTest, APortfolioWithoutSharesSaysHowToBuyThem) {
  addPortfolio(u"Trading", 100.0);
  showTree();
  EXPECT_EQ(String(u"No shares are held.\nRecord a purchase by Portfolios, Buy Shares... (Ctrl+B)."),
            table().shownEmptyText());
}

TEST_F(SharesHeldTableTest, TheCompanysNameStandsBesideTheCode) {
  addTrading();
  StockNames::remember(u"AAA.AX", u"Alpha Mining");
  showTree();
  EXPECT_EQ("Alpha Mining", cellText(table(), 0, u"Name"));
  EXPECT_EQ(String(), table().shownEmptyText());
}

TEST_F(SharesHeldTableTest, ADoubleClickShowsThePurchasesOfTheShare) {
  addTrading();
  showTree();
  leftClick(held(u"Trading"));
  doubleClick(table(), 0, u"Gain %");
  SharesHeldTreeItem* const node = purchases(u"Trading", u"AAA.AX");
  EXPECT_EQ(node, tree().shownItem());
  EXPECT_EQ(node, tree().getCurrentItem());
  EXPECT_TRUE(node->table()->inFocusChain());
}

TEST_F(SharesHeldTableTest, ADoubleClickOnLimitsTypesIntoThem) {
  addTrading();
  showTree();
  leftClick(held(u"Trading"));
  doubleClick(table(), 0, u"Price Min/Max");
  EXPECT_TRUE(find<FXTextField>(table()));
  EXPECT_EQ(&held(u"Trading"), tree().shownItem());
}

// ---- Limits ----

TEST_F(SharesHeldTableTest, PriceBelowTheMinimumWarnsAndTintsTheRow) {
  addTrading();
  limits(7.0, 0.0);
  showTree();
  ASSERT_FALSE(window().warnings.empty());
  const TestWindow::Warning& warning = window().warnings.back();
  EXPECT_EQ(String(u"AAA.AX has dropped below $7.00 and is now at $6.60"), warning.text);
  EXPECT_EQ(String(u"Warning from Tallymoor!"), warning.caption);
  EXPECT_EQ(String(u"AAA.AXmin warning"), warning.key);
  EXPECT_EQ(1, warning.level);
  EXPECT_EQ(RED, cellColour(table(), 0, u"Number"));
  EXPECT_EQ(RED, cellColour(table(), 0, u"Price Now"));
  EXPECT_EQ("$7.00 - ", cellText(table(), 0, u"Price Min/Max"));
}

TEST_F(SharesHeldTableTest, PriceAboveTheMaximumWarnsInItsOwnWords) {
  addTrading();
  limits(0.0, 6.5);
  showTree();
  ASSERT_FALSE(window().warnings.empty());
  const TestWindow::Warning& warning = window().warnings.back();
  EXPECT_EQ(String(u"AAA.AX has increased above$6.50 and is now at $6.60"), warning.text);
  EXPECT_EQ(String(u"AAA.AXmax warning"), warning.key);
  EXPECT_EQ(GREEN, cellColour(table(), 0, u"Number"));
}

TEST_F(SharesHeldTableTest, LimitsOfZeroNeverWarn) {
  addTrading();
  limits(0.0, 0.0);
  showTree();
  EXPECT_TRUE(window().warnings.empty());
  EXPECT_EQ(TableItem::NO_COLOUR, cellColour(table(), 0, u"Number"));
  EXPECT_EQ(editableTint(), cellColour(table(), 0, u"Price Now"));
}

TEST_F(SharesHeldTableTest, PriceInsideOrOnTheLimitsIsFine) {
  addTrading();
  limits(6.6, 6.6);
  showTree();
  EXPECT_TRUE(window().warnings.empty());
  limits(6.0, 6.9);
  table().updateTable();
  EXPECT_TRUE(window().warnings.empty());
  EXPECT_EQ("66%", cellText(table(), 0, u"% in Min/Max"));
}

TEST_F(SharesHeldTableTest, TheMinimumIsTestedFirst) {
  addTrading();
  limits(7.0, 5.0);
  showTree();
  ASSERT_FALSE(window().warnings.empty());
  for (const TestWindow::Warning& warning : window().warnings)
    EXPECT_EQ(String(u"AAA.AXmin warning"), warning.key);
}

TEST_F(SharesHeldTableTest, WithoutAnUpperLimitThereIsNoPlaceBetweenTheLimits) {
  addTrading();
  limits(5.0, 0.0);
  showTree();
  EXPECT_EQ("$5.00 - ", cellText(table(), 0, u"Price Min/Max"));
  EXPECT_EQ("", cellText(table(), 0, u"% in Min/Max"));
}

TEST_F(SharesHeldTableTest, UsersLimitsDoNotCountWhileTheAutomaticOnesAreChosen) {
  addTrading();
  limits(7.0, 8.0);
  autoMinMaxPrices = true;
  showTree();
  EXPECT_TRUE(window().warnings.empty());
  EXPECT_EQ("", cellText(table(), 0, u"% in Min/Max"));
  EXPECT_EQ("$7.00 - $8.00", cellText(table(), 0, u"Price Min/Max"));
  autoMinMaxPrices = false;
}

TEST_F(SharesHeldTableTest, IndicatorsAreShownAndTheAutomaticLimitsWarnWhenChosen) {
  SharePortfolioUser& user = addPortfolio(u"Trading", 5000.0);
  // A line that rises by two cents a day to 10.00 today, with a weekly range of 1.08. The current price has
  // fallen below it.
  market().setHistory(u"AAA.AX", Date(2025, 1, 6), Date(2026, 3, 2),
                      [](const Date& day) { return 10.0 + 0.02 * day.daysSince(Date(2026, 3, 3)); });
  market().setDay(u"AAA.AX", Date(2026, 3, 3), 7.4);
  user.buyShares(u"AAA.AX", {Date(2026, 2, 2), 100, 9.42, 0.0, String()});
  limits(1.0, 20.0);
  showTree();
  EXPECT_TRUE(window().warnings.empty());
  EXPECT_EQ("$7.84 - $12.16", cellText(table(), 0, u"Auto Min/Max"));
  EXPECT_EQ("33%", cellText(table(), 0, u"% in Min/Max")); // 6.40 of 19.00.
  Row& row = *table().rowAt(0);
  EXPECT_EQ(String(u"10.00"), table().cell(&IndicatorCells::lrValue, row).shown());
  EXPECT_EQ(String(u"147.22%"), table().cell(&IndicatorCells::lrRate, row).shown());
  EXPECT_EQ(String(u"1.08"), table().cell(&IndicatorCells::averageTrueRange, row).shown());
  autoMinMaxPrices = true;
  table().updateTable();
  autoMinMaxPrices = false;
  ASSERT_FALSE(window().warnings.empty());
  EXPECT_EQ(String(u"AAA.AX has dropped below $7.84 and is now at $7.40"), window().warnings.back().text);
  EXPECT_EQ(String(u"AAA.AXmin warning"), window().warnings.back().key);
  EXPECT_EQ(RED, cellColour(table(), 0, u"Number"));
  EXPECT_EQ("-10%", cellText(table(), 0, u"% in Min/Max")); // -0.44 of 4.32.
}

TEST_F(SharesHeldTableTest, TypedLimitsAreThoseOfEveryPortfolio) {
  addTrading();
  SharePortfolioUser& other = addPortfolio(u"Other", 100.0);
  other.buyShares(u"AAA.AX", {Date(2026, 2, 20), 10, 6.0, 0.0, String()});
  showTree();
  typeInto(table(), 0, u"Price Min/Max", "7 - 9");
  EXPECT_EQ("$7.00 - $9.00", cellText(*held(u"Other").table(), 0, u"Price Min/Max"));
  EXPECT_EQ(RED, cellColour(*held(u"Other").table(), 0, u"Number"));
}

TEST_F(SharesHeldTableTest, NewHoldingTakesTheLimitsOfTheWatchedStock) {
  addPortfolio(u"Trading", 5000.0);
  priceTrading();
  Settings::Instance().writeReal(u"Watchlists", u"minvalue - AAA.AX", 7.0);
  showTree();
  choose(node(u"Trading"), "Buy shares...", [this] { enterPurchase("AAA.AX", "10", "6.6"); });
  EXPECT_EQ("$7.00 - ", cellText(table(), 0, u"Price Min/Max"));
  EXPECT_EQ(String(u"7.0000"), textValue(share(u"AAA.AX"), u"MinPrice"));
}

TEST_F(SharesHeldTableTest, LimitsOfAShareSoldSinceTheViewDateAreTheStocks) {
  SharePortfolioUser& user = addTrading();
  buy(user, u"BBB.AX", 100, 2.0);
  user.sellShares(u"BBB.AX", {Date(2026, 2, 25), 100, 2.5, 0.0, String()}, true);
  showTree();
  viewDate(Date(2026, 2, 18));
  typeInto(table(), 1, u"Price Min/Max", "1 - 3");
  EXPECT_EQ("$1.00 - $3.00", cellText(table(), 1, u"Price Min/Max"));
  EXPECT_DOUBLE_EQ(3.0, Settings::Instance().readReal(u"Watchlists", u"maxvalue - BBB.AX"));
}

TEST_F(SharesHeldTableTest, PricesOfAViewDateTintButDoNotWarn) {
  addTrading();
  limits(6.5, 0.0);
  showTree();
  EXPECT_TRUE(window().warnings.empty());
  viewDate(Date(2026, 2, 27)); // 5.50.
  EXPECT_EQ(RED, cellColour(table(), 0, u"Number"));
  EXPECT_TRUE(window().warnings.empty());
}

TEST_F(SharesHeldTableTest, TypedLimitsAreStoredInRecordsAndSettings) {
  addTrading();
  showTree();
  typeInto(table(), 0, u"Price Min/Max", "5.5 - $7.25");
  EXPECT_EQ(String(u"5.5000"), textValue(share(u"AAA.AX"), u"MinPrice"));
  EXPECT_EQ(String(u"7.2500"), textValue(share(u"AAA.AX"), u"MaxPrice"));
  EXPECT_DOUBLE_EQ(5.5, Settings::Instance().readReal(u"Watchlists", u"minvalue - AAA.AX"));
  EXPECT_DOUBLE_EQ(7.25, Settings::Instance().readReal(u"Watchlists", u"maxvalue - AAA.AX"));
  EXPECT_EQ("$5.50 - $7.25", cellText(table(), 0, u"Price Min/Max"));
}

TEST_F(SharesHeldTableTest, APriceBelowZeroIsRefused) {
  addTrading();
  showTree();
  const std::string before = cellText(table(), 0, u"Price Now");
  answer("The price of AAA.AX can't be less than zero.", "OK");
  typeInto(table(), 0, u"Price Now", "-5");
  EXPECT_EQ(before, cellText(table(), 0, u"Price Now"));
  EXPECT_EQ(1u, boxes().size());
}

TEST_F(SharesHeldTableTest, LimitsThatReadAsBeforeReplaceTheTextThatWasTyped) {
  addTrading();
  limits(5.0, 7.0);
  showTree();
  typeInto(table(), 0, u"Price Min/Max", "5.001 - 7.00");
  EXPECT_EQ(String(u"5.0010"), textValue(share(u"AAA.AX"), u"MinPrice"));
  EXPECT_EQ("$5.00 - $7.00", cellText(table(), 0, u"Price Min/Max"));
}

TEST_F(SharesHeldTableTest, BadLimitsAreRefused) {
  addTrading();
  limits(5.0, 7.0);
  showTree();
  answer("The Min Price has a bad format.", "OK");
  typeInto(table(), 0, u"Price Min/Max", "six");
  EXPECT_EQ(String(u"5.0000"), textValue(share(u"AAA.AX"), u"MinPrice"));
  EXPECT_DOUBLE_EQ(5.0, Settings::Instance().readReal(u"Watchlists", u"minvalue - AAA.AX"));
  EXPECT_EQ("$5.00 - $7.00", cellText(table(), 0, u"Price Min/Max"));
  EXPECT_EQ(1u, boxes().size());
}

TEST_F(SharesHeldTableTest, UnchangedLimitsChangeNothing) {
  addTrading();
  limits(5.1234, 7.0);
  showTree();
  typeInto(table(), 0, u"Price Min/Max", "$5.12 - $7.00"); // The cell's text.
  EXPECT_EQ(String(u"5.1234"), textValue(share(u"AAA.AX"), u"MinPrice"));
  EXPECT_DOUBLE_EQ(5.1234, Settings::Instance().readReal(u"Watchlists", u"minvalue - AAA.AX"));
}

TEST_F(SharesHeldTableTest, EmptiedLimitsAreNone) {
  addTrading();
  limits(5.0, 7.0);
  showTree();
  typeInto(table(), 0, u"Price Min/Max", "");
  EXPECT_EQ(String(u"0.0000"), textValue(share(u"AAA.AX"), u"MinPrice"));
  EXPECT_EQ("", cellText(table(), 0, u"Price Min/Max"));
}

// ---- Typed prices ----

TEST_F(SharesHeldTableTest, TypedPriceCountsInEveryPortfolio) {
  addTrading();
  SharePortfolioUser& other = addPortfolio(u"Other", 100.0);
  other.buyShares(u"AAA.AX", {Date(2026, 2, 20), 10, 6.0, 0.0, String()});
  showTree();
  answer("Do you want to manually update the price of AAA.AX on 03/03/2026 to $8.00?", "Yes");
  typeInto(table(), 0, u"Price Now", "8");
  EXPECT_EQ("8.00", cellText(table(), 0, u"Price Now"));
  EXPECT_EQ("8.00", cellText(*held(u"Other").table(), 0, u"Price Now"));
  EXPECT_DOUBLE_EQ(8.0, TallymoorInternet::Instance().getCachedPrice(u"AAA.AX", Date(), 0));
  EXPECT_DOUBLE_EQ(2000.0, portfolios()[u"Trading"]->sharesValueToday());
  EXPECT_DOUBLE_EQ(80.0, other.sharesValueToday());
  EXPECT_EQ("$5,650.00", figure(node(u"Trading"), "Total Capital"));
}

TEST_F(SharesHeldTableTest, TypedPriceIsDroppedAtNo) {
  addTrading();
  showTree();
  answer("Do you want to manually update the price of AAA.AX on 03/03/2026 to $8.00?", "No");
  typeInto(table(), 0, u"Price Now", "8");
  EXPECT_EQ("6.60", cellText(table(), 0, u"Price Now"));
}

TEST_F(SharesHeldTableTest, NoPriceIsNotAskedAbout) {
  addTrading();
  showTree();
  for (const char* text : {"", "zero", "0.00001"})
    typeInto(table(), 0, u"Price Now", text);
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ("6.60", cellText(table(), 0, u"Price Now"));
}

TEST_F(SharesHeldTableTest, TypedPriceOfAPastDayBelongsToThatDay) {
  addTrading();
  showTree();
  viewDate(Date(2026, 2, 27));
  answer("Do you want to manually update the price of AAA.AX on 27/02/2026 to $8.00?", "Yes");
  typeInto(table(), 0, u"Price Now", "8");
  EXPECT_DOUBLE_EQ(2000.0, portfolios()[u"Trading"]->sharesValueToday());
  viewDate(Date(2026, 3, 2));
  EXPECT_EQ("6.00", cellText(table(), 0, u"Price Now"));
}

// ---- New prices ----

TEST_F(SharesHeldTableTest, ANewPriceRefreshesItsRowAndTheFiguresAbove) {
  addTrading();
  showTree();
  market().setCurrentPrice(u"AAA.AX", 7.2);
  runPass();
  EXPECT_EQ("7.20", cellText(table(), 0, u"Price Now"));
  EXPECT_EQ("7.20", cellText(*purchases(u"Trading", u"AAA.AX")->table(), 1, u"Price Now"));
  EXPECT_STREQ("$1,800.00",
               held(u"Trading").totalsBar()->total(&HeldShareCells::currentValue)->getText().text());
  EXPECT_EQ("$5,450.00", figure(node(u"Trading"), "Total Capital"));
  EXPECT_EQ("$5,450.00", figure(root(), "Total Capital"));
}

TEST_F(SharesHeldTableTest, ANewPriceAsksNothing) {
  addTrading();
  limits(7.0, 0.0);
  showTree();
  const std::size_t before = window().warnings.size();
  market().setCurrentPrice(u"AAA.AX", 2.0); // A third of yesterday's.
  runPass();
  EXPECT_TRUE(boxes().empty());
  EXPECT_GT(window().warnings.size(), before);
}

TEST_F(SharesHeldTableTest, CodesAreWatchedAsLongAsAViewShowsThem) {
  addTrading();
  SharePortfolioUser& other = addPortfolio(u"Other", 1000.0);
  buy(other, u"AAA.AX", 5, 6.0);
  other.recordAdjustment(u"AAA.AX", Date(2026, 2, 16), 2, false);
  priceTrading();
  showTree();
  PriceUpdater& updater = TallymoorInternet::Instance().priceUpdater();
  EXPECT_TRUE(updater.hasCode(u"AAA.AX"));
  portfolios()[u"Trading"]->removeHeldShare(u"AAA.AX");
  node(u"Trading").transactionMade();
  EXPECT_TRUE(updater.hasCode(u"AAA.AX"));
  portfolios()[u"Other"]->removeHeldShare(u"AAA.AX");
  node(u"Other").transactionMade();
  EXPECT_FALSE(updater.hasCode(u"AAA.AX"));
}

// ---- View date ----

TEST_F(SharesHeldTableTest, ShareSoldSinceTheViewDateStillHasItsRow) {
  SharePortfolioUser& user = addTrading();
  buy(user, u"BBB.AX", 100, 2.0);
  user.sellShares(u"BBB.AX", {Date(2026, 2, 20), 40, 2.5, 0.0, String()}, true);
  user.sellShares(u"BBB.AX", {Date(2026, 2, 25), 60, 2.5, 0.0, String()}, true);
  showTree();
  EXPECT_THAT(rowKeys(table()), ElementsAre("AAA.AX"));
  viewDate(Date(2026, 2, 18));
  ASSERT_THAT(rowKeys(table()), ElementsAre("AAA.AX", "BBB.AX"));
  EXPECT_EQ("100.00", cellText(table(), 1, u"Number"));
  EXPECT_EQ("$200.00", cellText(table(), 1, u"Purchase Value"));
  EXPECT_EQ("16", cellText(table(), 1, u"Days Held"));
  // Excludes the parcel bought two days later.
  EXPECT_EQ("$1,000.00", cellText(table(), 0, u"Purchase Value"));
  EXPECT_TRUE(childLabels(held(u"Trading")).empty());
  viewDate(Date(2026, 2, 20)); // Forty were sold on this day, so sixty are held at its end.
  EXPECT_EQ("60.00", cellText(table(), 1, u"Number"));
  EXPECT_EQ("$120.00", cellText(table(), 1, u"Purchase Value"));
  viewDate(Date(2026, 2, 25));
  EXPECT_THAT(rowKeys(table()), ElementsAre("AAA.AX"));
}

// ---- Commands of a row ----

TEST_F(SharesHeldTableTest, RowOffersItsCommands) {
  addTrading();
  showTree();
  std::vector<std::string> entries;
  whenModal("Delete from records!...", [&](FXWindow& popup) {
    entries = labels(popup);
    dynamic_cast<FXPopup&>(popup).popdown();
  });
  rightClickRow(table(), 0);
  EXPECT_THAT(entries,
              ElementsAre("Sell AAA.AX...", "Buy AAA.AX...", "Price history...", "Delete from records!..."));
}

TEST_F(SharesHeldTableTest, APriceThatIsCorrectedInTheHistoryShowsAtOnce) {
  SharePortfolioUser& user = addTrading();
  showTree();
  leftClick(held(u"Trading"));
  chooseFromRow(table(), 0, "Price history...", [this] {
    whenModal("Stored prices of AAA.AX", [this](FXWindow& history) {
      auto& stored = *find<PriceHistoryTable>(history);
      typeInto(stored, 0, u"Close", "7.00");
      EXPECT_DOUBLE_EQ(find<ChartView>(history)->model().series.at(0).points.front().value, 5.0)
          << "in shares of today, by the splits of the portfolio";
      press(history, "Close");
    });
  });
  settle();
  EXPECT_EQ("7.00", cellText(table(), 0, u"Price Now"));
  EXPECT_DOUBLE_EQ(user.capitalRecord().sharesValueOn(Date()), 250 * 7.0);
}

TEST_F(SharesHeldTableTest, ShareThatIsNoLongerHeldCannotBeDeleted) {
  SharePortfolioUser& user = addTrading();
  buy(user, u"BBB.AX", 100, 2.0);
  user.sellShares(u"BBB.AX", {Date(2026, 2, 25), 100, 2.5, 0.0, String()}, true);
  showTree();
  viewDate(Date(2026, 2, 18));
  std::vector<std::string> entries;
  whenModal("Buy BBB.AX...", [&](FXWindow& popup) {
    entries = labels(popup);
    dynamic_cast<FXPopup&>(popup).popdown();
  });
  rightClickRow(table(), 1);
  EXPECT_THAT(entries, ElementsAre("Buy BBB.AX...", "Price history..."));
}

TEST_F(SharesHeldTableTest, DeletingAShareRemovesItFromRecordsAndTree) {
  SharePortfolioUser& user = addTrading();
  buy(user, u"BBB.AX", 100, 2.0);
  showTree();
  leftClick(held(u"Trading"));
  chooseFromRow(table(), 0, "Delete from records!...",
                [this] { answer(deletion + "Continue to delete all share holdings of AAA.AX?", "Yes"); });
  EXPECT_THAT(rowKeys(table()), ElementsAre("BBB.AX"));
  EXPECT_THAT(childLabels(held(u"Trading")), ElementsAre("BBB.AX Purchases"));
  EXPECT_FALSE(user.findHeldShare(u"AAA.AX"));
  EXPECT_EQ("$3,450.00", figure(node(u"Trading"), "Capital in cash")); // No cash entry is changed.
  EXPECT_TRUE(root().takePortfoliosChanged());
}

TEST_F(SharesHeldTableTest, NothingIsDeletedAtNo) {
  addTrading();
  showTree();
  chooseFromRow(table(), 0, "Delete from records!...",
                [this] { answer(deletion + "Continue to delete all share holdings of AAA.AX?", "No"); });
  EXPECT_THAT(rowKeys(table()), ElementsAre("AAA.AX"));
  EXPECT_FALSE(root().takePortfoliosChanged());
}

TEST_F(SharesHeldTableTest, BuyingFromARowFillsTheCodeIn) {
  addTrading();
  showTree();
  leftClick(held(u"Trading"));
  chooseFromRow(table(), 0, "Buy AAA.AX...", [this] { enterPurchase("", "10", "6.6"); });
  EXPECT_EQ("260.00", cellText(table(), 0, u"Number"));
  EXPECT_EQ(3, purchases(u"Trading", u"AAA.AX")->table()->getNumRows());
  EXPECT_EQ(&held(u"Trading"), tree().shownItem());
}

TEST_F(SharesHeldTableTest, FailuresOfCommandsAreReported) {
  addTrading();
  showTree();
  chooseFromRow(table(), 0, "Delete from records!...", [this] {
    failInside("Continue to delete all share holdings of AAA.AX?");
    answer("SharesHeldTable::onDelete failed. Exception : test", "OK");
  });
  chooseFromRow(table(), 0, "Sell AAA.AX...", [this] {
    failInside("Sell Shares");
    answer("SharesHeldTable::onSell failed. Exception : test", "OK");
  });
  chooseFromRow(table(), 0, "Buy AAA.AX...", [this] {
    failInside("Buy Shares");
    answer("SharesHeldTable::onBuy failed. Exception : test", "OK");
  });
  EXPECT_EQ("250.00", cellText(table(), 0, u"Number"));
}

} // namespace
