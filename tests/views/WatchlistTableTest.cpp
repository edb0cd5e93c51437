#include "views/WatchlistTable.h"
#include "WatchlistsTest.h"
#include "foundation/Settings.h"
#include "market/StockNames.h"
#include "views/HeldShareCells.h"
#include "views/IndicatorCells.h"
#include "widgets/Colours.h"
#include "xml/Leaves.h"

using namespace Tallymoor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class WatchlistTableTest : public WatchlistsTest {
protected:
  /// A price that rises by two cents a day until yesterday and would be 10.00 today. Today's price is the
  /// given one.
  void priceRising(const String& code, double today) {
    market().setHistory(code, Date(2025, 1, 6), Date(2026, 3, 2),
                        [](const Date& day) { return 10.0 + 0.02 * day.daysSince(Date(2026, 3, 3)); });
    market().setDay(code, Date(2026, 3, 3), today);
  }
  /// "Main" with that stock, and a portfolio with 5,000.00 and no shares.
  void watchRising(double today) {
    priceRising(u"UP.AX", today);
    addPortfolio(u"Trading", 5000.0);
    addList(u"Main", {u"UP.AX"});
  }
  static void keepLimits(const String& code, double min, double max) {
    PriceLimits{min, max}.keepForStock(code);
  }
  XMLHeldShare& share(const String& portfolio, const String& code) {
    return *portfolios()[portfolio]->findHeldShare(code);
  }
  static constexpr FXColor RED = FXRGB(255, 175, 175);
  static constexpr FXColor GREEN = FXRGB(175, 255, 175);
  static constexpr FXColor BLUE = FXRGB(215, 215, 255);
};

TEST_F(WatchlistTableTest, DeclaresItsColumnsInOrder) {
  watchOne();
  showTrees();
  EXPECT_THAT(titles(table()),
              ElementsAre("Name", "Price Now", "Day move", "Day %", "Week %", "Month %", "3 Months %",
                          "6 Months %", "12 Months %", "Calender Year %", "Fin. Year %", "LR Value",
                          "LR Rate", "Av. True Range", "Price Min/Max", "Auto Min/Max", "% in Min/Max",
                          "Auto Max Portfolio", "Auto Volatility"));
  const std::vector<int> compares = {0, 3, 5, 4, 4, 4, 4, 4, 4, 4, 4, 3, 4, 3, 0, 0, 4, 4, 4};
  for (std::size_t i = 0; i < compares.size(); ++i) {
    const Column& column = *table().columns()[i];
    EXPECT_EQ(compares[i], column.compareType()) << column.title().toUTF8();
    EXPECT_EQ(i == 0 ? FXuint(FXTableItem::LEFT) : FXuint(FXTableItem::RIGHT), column.justify());
    EXPECT_TRUE(column.defaultVisible());
    EXPECT_EQ(column.title() == u"Price Min/Max", column.editable());
  }
}

TEST_F(WatchlistTableTest, AnEmptyListSaysHowToFillIt) {
  addPortfolio(u"Trading", 100.0);
  addList(u"Main", {});
  showTrees();
  EXPECT_EQ(String(u"This watchlist is empty.\nRight-click its name in the tree and choose \"Add a stock to "
                   u"watch...\"."),
            table().shownEmptyText());
}

TEST_F(WatchlistTableTest, LimitsThatAreNotSetAreEmpty) {
  watchOne();
  showTrees();
  EXPECT_EQ("", cellText(table(), 0, u"Price Min/Max"));
  typeInto(table(), 0, u"Price Min/Max", "5.50 -");
  EXPECT_EQ("$5.50 - ", cellText(table(), 0, u"Price Min/Max"));
  typeInto(table(), 0, u"Price Min/Max", "");
  EXPECT_EQ("", cellText(table(), 0, u"Price Min/Max"));
  EXPECT_TRUE(PriceLimits::ofStock(u"AAA.AX").areNone());
}

TEST_F(WatchlistTableTest, TheCompanysNameStandsBesideTheCode) {
  watchOne();
  StockNames::remember(u"AAA.AX", u"Alpha Mining");
  showTrees();
  EXPECT_EQ("Alpha Mining", cellText(table(), 0, u"Name"));
}

TEST_F(WatchlistTableTest, GainsOverASplitAreThoseOfTheSharesHeld) {
  addTrading();
  addList(u"Main", {u"AAA.AX"});
  showTrees();
  for (WatchlistTable* each : {&table(), heldList().table()}) {
    EXPECT_EQ("32.00%", cellText(*each, 0, u"Month %")) << "from 10.00 for what are two shares now";
    EXPECT_EQ("10.00%", cellText(*each, 0, u"Day %"));
    EXPECT_EQ("0.60", cellText(*each, 0, u"Day move"));
  }
  viewDateOfBoth(Date(2026, 2, 16));
  EXPECT_EQ("10.00%", cellText(table(), 0, u"Day %"));
  EXPECT_EQ("0.50", cellText(table(), 0, u"Day move"));
  viewDateOfBoth(Date(2026, 2, 13));
  EXPECT_EQ("0.00%", cellText(table(), 0, u"Day %")) << "the split has not come";
}

TEST_F(WatchlistTableTest, ADoubleClickTypesIntoTheLimits) {
  watchOne();
  showTrees();
  bringToFront(table());
  doubleClick(table(), 0, u"Day %");
  auto* editor = find<FXTextField>(table());
  ASSERT_TRUE(editor);
  EXPECT_GE(editor->getX(), table().getRowHeaderWidth());
  EXPECT_LE(editor->getX() + editor->getWidth(), table().getWidth()) << "what is typed is in sight";
  editor->setText("5 - 9");
  table().acceptInput(TRUE);
  EXPECT_EQ("$5.00 - $9.00", cellText(table(), 0, u"Price Min/Max"));
}

TEST_F(WatchlistTableTest, AWarningIsOverWhenThePriceIsWithinItsLimitsAgain) {
  watchOne(); // 6.60.
  keepLimits(u"AAA.AX", 7.0, 9.0);
  showTrees();
  EXPECT_EQ(String(u"AAA.AXmin warning"), window().warnings.back().key);
  window().warningsOver.clear();
  typeInto(table(), 0, u"Price Min/Max", "6 - 9");
  EXPECT_TRUE(window().warningsOver.contains(u"AAA.AXmin warning"));
}

TEST_F(WatchlistTableTest, ColumnsHaveTheirToolTips) {
  watchOne();
  showTrees();
  const auto tip = [this](Column::Function function) { return table().getColumn(function).toolTip(); };
  EXPECT_EQ(
      String(u"Change since the same day three months ago. The performance of a portfolio counts from the "
             u"end of that month."),
      tip(&WatchlistCells::threeMonthsPercent));
  EXPECT_EQ(String(u"Value now of the linear regression line of recent weekly values"),
            tip(&IndicatorCells::lrValue));
  EXPECT_EQ(String(u"Annualised percentage increase of the 'LR Value' now against six months ago."),
            tip(&IndicatorCells::lrRate));
  EXPECT_EQ(String(u"Average of the recent weekly true range"), tip(&IndicatorCells::averageTrueRange));
  EXPECT_EQ(String(u"Set your minimum and maximum prices for holding this stock. Hit F2 to edit."),
            tip(&WatchlistCells::priceMinMax));
  EXPECT_EQ(String(u"Min/Max calculated as a multple of the ATR above and below the LR Value"),
            tip(&IndicatorCells::autoMinMax));
  EXPECT_EQ(String(u"Maximum portfolio to risk on buying this share. Selling at Auto Min Price would see "
                   u"loss of 2% of capital."),
            tip(&WatchlistCells::autoMaxPortfolio));
  EXPECT_EQ(String(u"Average True Range (last two weeks) percentage of LR value"),
            tip(&IndicatorCells::autoVolatility));
  EXPECT_EQ(String(), tip(&WatchlistCells::priceNow));
}

TEST_F(WatchlistTableTest, FiguresAStockByHand) {
  watchRising(10.5);
  showTrees();
  // The closes are on a line, which is 10.00 today and was 6.36 half a year ago. Each week spans 8 cents of
  // closes and 0.50 to each side, a range of 1.08.
  const std::vector<std::string> expected = {
      "",        "10.50",          "0.52",    // 9.98 yesterday.
      "5.21%",   "5.85%",          "11.23%",  // 9.92 on 27 February, 9.44 on 3 February.
      "28.05%",  "64.58%",         "288.89%", // 8.20, 6.38 and 2.70.
      "19.86%",  "105.88%",                   // 8.76 on 31 December, 5.10 on 1 July.
      "10.00",   "147.22%",        "1.08",    // (10.00 / 6.36)^2.
      "",        "$7.84 - $12.16", "61%",     // 2.66 of 4.32.
      "$394.74", "10.80%"};                   // 100.00 * 10.50 / 2.66.
  EXPECT_EQ(expected, rowTexts(table(), 0));
}

TEST_F(WatchlistTableTest, FiguresAreOfTheViewDate) {
  watchRising(10.5);
  showTrees();
  viewDateOfBoth(Date(2026, 2, 24)); // The line is at 9.86.
  EXPECT_EQ("9.86", cellText(table(), 0, u"Price Now"));
  EXPECT_EQ("0.02", cellText(table(), 0, u"Day move"));
  EXPECT_EQ("9.86", cellText(table(), 0, u"LR Value"));
  EXPECT_EQ("$7.70 - $12.02", cellText(table(), 0, u"Auto Min/Max"));
}

TEST_F(WatchlistTableTest, YoungStockHasEmptyCellsWhereThereWasNoPrice) {
  market().setHistory(u"NEW.AX", Date(2026, 2, 2), Date(2026, 3, 3), 2.0);
  addPortfolio(u"Trading", 5000.0);
  addList(u"Main", {u"NEW.AX"});
  showTrees();
  EXPECT_EQ("2.00", cellText(table(), 0, u"Price Now"));
  EXPECT_EQ("0.00%", cellText(table(), 0, u"Month %"));
  for (const char16_t* title : {u"3 Months %", u"6 Months %", u"12 Months %", u"Fin. Year %"})
    EXPECT_EQ("", cellText(table(), 0, title));
  for (const char16_t* title : {u"LR Value", u"LR Rate", u"Av. True Range", u"Auto Min/Max", u"% in Min/Max",
                                u"Auto Max Portfolio", u"Auto Volatility"})
    EXPECT_EQ("", cellText(table(), 0, title));
  EXPECT_TRUE(boxes().empty());
}

TEST_F(WatchlistTableTest, AnUnknownStockShowsNoFiguresAndAsksNothing) {
  addPortfolio(u"Trading", 5000.0);
  addList(u"Main", {u"NONE.AX"});
  showTrees();
  leftClick(list());
  EXPECT_TRUE(boxes().empty());
  EXPECT_THAT(rowTexts(table(), 0), testing::Each(""));
}

TEST_F(WatchlistTableTest, AStockWhoseClosesAreZeroHasAnEmptyRow) {
  market().setHistory(u"NIL.AX", Date(2024, 12, 1), Date(2026, 3, 3), 0.0);
  addPortfolio(u"Trading", 5000.0);
  addList(u"Main", {u"NIL.AX"});
  keepLimits(u"NIL.AX", 5.0, 7.0);
  showTrees();
  std::vector<std::string> texts = rowTexts(table(), 0);
  std::erase(texts, "$5.00 - $7.00");
  EXPECT_THAT(texts, testing::Each(""));
  EXPECT_EQ(TableItem::NO_COLOUR, cellColour(table(), 0, u"Price Now"));
  EXPECT_TRUE(window().warnings.empty()) << "no price has left its limits";
}

TEST_F(WatchlistTableTest, MissingDaysAreRequestedOncePerRun) {
  market().setHistory(u"NEW.AX", Date(2026, 2, 2), Date(2026, 3, 3), 2.0);
  addPortfolio(u"Trading", 5000.0);
  addList(u"Main", {u"NEW.AX"});
  showTrees();
  leftClick(list()); // With the chart of the years before.
  const std::size_t before = market().requested(MarketFixture::Page::History).size();
  leftClick(list());
  leftClick(list());
  EXPECT_EQ(before, market().requested(MarketFixture::Page::History).size());
}

TEST_F(WatchlistTableTest, CapitalIsThatOfThePortfolioOrOfAll) {
  watchRising(10.5);
  buy(addPortfolio(u"Other", 2500.0), u"ZZZ.AX", 100, 5.0);
  portfolios()[u"Other"]->setComparisonIndex(u"UP.AX");
  showTrees();
  EXPECT_EQ(7500.0, table().capital());
  EXPECT_EQ(2500.0, heldList(u"Other").table()->capital());
  EXPECT_EQ("$592.11", cellText(table(), 0, u"Auto Max Portfolio")); // 150.00 * 10.50 / 2.66.
  const WatchlistTable& other = *heldList(u"Other").table();
  EXPECT_EQ("$197.37", cellText(other, other.getRow(u"UP.AX"), u"Auto Max Portfolio"));
}

TEST_F(WatchlistTableTest, MoneyAmongPercentagesIsSortedAsMoney) {
  watchRising(10.5);
  priceRising(u"TOP.AX", 12.0);
  WatchlistSettings::addCode(u"Main", u"TOP.AX");
  portfolios()[u"Trading"]->creditCash(Date(2026, 2, 1), 95000.0, CASH_EVENT_DEPOSIT, String());
  showTrees();
  EXPECT_EQ("$7,894.74", cellText(table(), table().getRow(u"UP.AX"), u"Auto Max Portfolio"));
  EXPECT_EQ("$5,769.23", cellText(table(), table().getRow(u"TOP.AX"), u"Auto Max Portfolio"));
  FXHeader& header = *table().getColumnHeader();
  const FXint column = columnOf(table(), u"Auto Max Portfolio");
  table().handle(&header, FXSEL(SEL_COMMAND, FXTable::ID_SELECT_COLUMN_INDEX),
                 reinterpret_cast<void*>(static_cast<FXival>(column)));
  EXPECT_THAT(rowKeys(table()), ElementsAre("TOP.AX", "UP.AX"));
}

// ---- The signal to buy ----

TEST_F(WatchlistTableTest, SteeplyRisingStockAboveItsLineIsBlue) {
  watchRising(10.5);
  showTrees();
  EXPECT_EQ(BLUE, cellColour(table(), 0, u"Price Now"));
  EXPECT_EQ(BLUE, cellColour(table(), 0, u"Price Min/Max"));
}

TEST_F(WatchlistTableTest, PriceOnTheLineIsNoSignal) {
  watchRising(10.0);
  showTrees();
  EXPECT_EQ(TableItem::NO_COLOUR, cellColour(table(), 0, u"Price Now"));
  EXPECT_EQ(editableTint(), cellColour(table(), 0, u"Price Min/Max"));
}

TEST_F(WatchlistTableTest, SlowlyRisingStockIsNoSignal) {
  market().setHistory(u"UP.AX", Date(2025, 1, 6), Date(2026, 3, 2),
                      [](const Date& day) { return 20.0 + 0.01 * day.daysSince(Date(2026, 3, 3)); });
  market().setDay(u"UP.AX", Date(2026, 3, 3), 20.5);
  addPortfolio(u"Trading", 5000.0);
  addList(u"Main", {u"UP.AX"});
  showTrees();
  EXPECT_EQ("21.02%", cellText(table(), 0, u"LR Rate")); // (20.00 / 18.18)^2.
  EXPECT_EQ(TableItem::NO_COLOUR, cellColour(table(), 0, u"Price Now"));
}

TEST_F(WatchlistTableTest, StockThatWasDearerAWeekAgoIsNoSignal) {
  watchRising(10.5);
  market().setDay(u"UP.AX", Date(2026, 2, 24), 10.51);
  showTrees();
  EXPECT_EQ(TableItem::NO_COLOUR, cellColour(table(), 0, u"Price Now"));
}

TEST_F(WatchlistTableTest, StockWithoutIndicatorsIsNoSignal) {
  market().setHistory(u"NEW.AX", Date(2026, 2, 2), Date(2026, 3, 2), 2.0);
  market().setDay(u"NEW.AX", Date(2026, 3, 3), 2.2);
  addPortfolio(u"Trading", 5000.0);
  addList(u"Main", {u"NEW.AX"});
  showTrees();
  EXPECT_EQ("2.20", cellText(table(), 0, u"Price Now"));
  EXPECT_EQ(TableItem::NO_COLOUR, cellColour(table(), 0, u"Price Now"));
}

TEST_F(WatchlistTableTest, TheSignalEndsWithANewPrice) {
  watchRising(10.5);
  showTrees();
  market().setCurrentPrice(u"UP.AX", 9.9);
  TallymoorInternet::Instance().setCachedPrice(u"UP.AX", Date(), 9.9);
  runPass();
  EXPECT_EQ("9.90", cellText(table(), 0, u"Price Now"));
  EXPECT_EQ(TableItem::NO_COLOUR, cellColour(table(), 0, u"Price Now"));
}

// ---- Limits ----

TEST_F(WatchlistTableTest, WatchedStockThatLeavesItsLimitsWarns) {
  watchOne(); // 6.60.
  keepLimits(u"AAA.AX", 7.0, 9.0);
  showTrees();
  ASSERT_FALSE(window().warnings.empty());
  const TestWindow::Warning& warning = window().warnings.back();
  EXPECT_EQ(String(u"AAA.AX has dropped below $7.00 and is now at $6.60"), warning.text);
  EXPECT_EQ(String(u"Warning from Tallymoor!"), warning.caption);
  EXPECT_EQ(String(u"AAA.AXmin warning"), warning.key);
  EXPECT_EQ(1, warning.level);
  EXPECT_EQ(RED, cellColour(table(), 0, u"Price Now"));
  EXPECT_EQ("$7.00 - $9.00", cellText(table(), 0, u"Price Min/Max"));
}

TEST_F(WatchlistTableTest, LeftLimitsTintBeforeTheSignalDoes) {
  watchRising(10.5);
  keepLimits(u"UP.AX", 0.0, 10.0);
  showTrees();
  EXPECT_EQ(GREEN, cellColour(table(), 0, u"Price Now"));
  ASSERT_FALSE(window().warnings.empty());
  EXPECT_EQ(String(u"UP.AXmax warning"), window().warnings.back().key);
}

TEST_F(WatchlistTableTest, TypedLimitsAreKeptAndWarnedOfAtOnce) {
  watchOne();
  showTrees();
  EXPECT_TRUE(window().warnings.empty());
  typeInto(table(), 0, u"Price Min/Max", "5.5 - $6.25");
  EXPECT_EQ("$5.50 - $6.25", cellText(table(), 0, u"Price Min/Max"));
  EXPECT_DOUBLE_EQ(5.5, Settings::Instance().readReal(u"Watchlists", u"minvalue - AAA.AX"));
  EXPECT_DOUBLE_EQ(6.25, Settings::Instance().readReal(u"Watchlists", u"maxvalue - AAA.AX"));
  ASSERT_FALSE(window().warnings.empty());
  EXPECT_EQ(String(u"AAA.AX has increased above$6.25 and is now at $6.60"), window().warnings.back().text);
  EXPECT_EQ(GREEN, cellColour(table(), 0, u"Price Now"));
}

TEST_F(WatchlistTableTest, BadLimitsAreRefused) {
  watchOne();
  keepLimits(u"AAA.AX", 5.0, 7.0);
  showTrees();
  answer("The Min Price has a bad format.", "OK");
  typeInto(table(), 0, u"Price Min/Max", "six");
  EXPECT_EQ("$5.00 - $7.00", cellText(table(), 0, u"Price Min/Max"));
  EXPECT_EQ(1u, boxes().size());
}

TEST_F(WatchlistTableTest, UnchangedLimitsChangeNothing) {
  watchOne();
  keepLimits(u"AAA.AX", 5.1234, 7.0);
  showTrees();
  typeInto(table(), 0, u"Price Min/Max", "$5.12 - $7.00"); // The cell's text.
  EXPECT_DOUBLE_EQ(5.1234, Settings::Instance().readReal(u"Watchlists", u"minvalue - AAA.AX"));
}

TEST_F(WatchlistTableTest, LimitsOfAWatchedStockAreThoseOfEveryHolding) {
  addTrading();
  SharePortfolioUser& other = addPortfolio(u"Other", 100.0);
  other.buyShares(u"AAA.AX", {Date(2026, 2, 20), 10, 6.0, 0.0, String()});
  addList(u"Main", {u"AAA.AX"});
  showTrees();
  typeInto(table(), 0, u"Price Min/Max", "7 - 9");
  for (const String& name : {String(u"Trading"), String(u"Other")}) {
    EXPECT_EQ(String(u"7.0000"), textValue(share(name, u"AAA.AX"), u"MinPrice"));
    EXPECT_EQ(String(u"9.0000"), textValue(share(name, u"AAA.AX"), u"MaxPrice"));
    EXPECT_EQ("$7.00 - $9.00", cellText(*held(name).table(), 0, u"Price Min/Max"));
    EXPECT_EQ(RED, cellColour(*held(name).table(), 0, u"Number"));
  }
  for (const TestWindow::Warning& warning : window().warnings)
    EXPECT_EQ(String(u"AAA.AXmin warning"), warning.key); // Only one warning per key is shown.
}

TEST_F(WatchlistTableTest, LimitsOfAHoldingAreThoseOfTheWatchedStock) {
  addTrading();
  addList(u"Main", {u"AAA.AX"});
  showTrees();
  typeInto(*held(u"Trading").table(), 0, u"Price Min/Max", "7 - 9");
  leftClick(list());
  EXPECT_EQ("$7.00 - $9.00", cellText(table(), 0, u"Price Min/Max"));
  EXPECT_EQ(RED, cellColour(table(), 0, u"Price Now"));
  typeInto(*held(u"Trading").table(), 0, u"Price Min/Max", "");
  leftClick(list());
  EXPECT_EQ("", cellText(table(), 0, u"Price Min/Max"));
  EXPECT_EQ(TableItem::NO_COLOUR, cellColour(table(), 0, u"Price Now"));
}

TEST_F(WatchlistTableTest, AutomaticLimitsTakeThePlaceOfTheUsersWhenChosen) {
  watchRising(7.5); // Below 7.84, without a split.
  keepLimits(u"UP.AX", 1.0, 20.0);
  showTrees();
  EXPECT_TRUE(window().warnings.empty());
  autoMinMaxPrices = true;
  leftClick(list());
  ASSERT_FALSE(window().warnings.empty());
  EXPECT_EQ(String(u"UP.AX has dropped below $7.84 and is now at $7.50"), window().warnings.back().text);
  EXPECT_EQ(RED, cellColour(table(), 0, u"Price Now"));
  EXPECT_EQ("$1.00 - $20.00", cellText(table(), 0, u"Price Min/Max"));
}

TEST_F(WatchlistTableTest, UnavailableAutomaticLimitsAreEmpty) {
  market().setHistory(u"NEW.AX", Date(2026, 2, 2), Date(2026, 3, 3), 2.0);
  addPortfolio(u"Trading", 5000.0);
  addList(u"Main", {u"NEW.AX"});
  keepLimits(u"NEW.AX", 3.0, 4.0);
  autoMinMaxPrices = true;
  showTrees();
  EXPECT_TRUE(window().warnings.empty());
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ(TableItem::NO_COLOUR, cellColour(table(), 0, u"Price Now"));
}

TEST_F(WatchlistTableTest, PricesOfAViewDateTintButDoNotWarn) {
  watchOne();
  keepLimits(u"AAA.AX", 6.5, 0.0);
  showTrees();
  viewDateOfBoth(Date(2026, 2, 24)); // 6.00.
  EXPECT_EQ(RED, cellColour(table(), 0, u"Price Now"));
  EXPECT_TRUE(window().warnings.empty());
}

// ---- New prices ----

TEST_F(WatchlistTableTest, ANewPriceRefreshesItsRowAndAsksNothing) {
  market().setHistory(u"AAA.AX", Date(2024, 12, 1), Date(2026, 3, 2), 6.0);
  addPortfolio(u"Trading", 5000.0);
  addList(u"Main", {u"AAA.AX"});
  keepLimits(u"AAA.AX", 5.0, 0.0);
  showTrees();
  EXPECT_EQ("6.00", cellText(table(), 0, u"Price Now"));
  market().setCurrentPrice(u"AAA.AX", 4.5);
  runPass();
  EXPECT_EQ("4.50", cellText(table(), 0, u"Price Now"));
  EXPECT_EQ("-1.50", cellText(table(), 0, u"Day move"));
  EXPECT_EQ(RED, cellColour(table(), 0, u"Price Now"));
  EXPECT_EQ(1u, window().warnings.size());
  EXPECT_TRUE(boxes().empty());
}

TEST_F(WatchlistTableTest, CodesAreWatchedAsLongAsAListShowsThem) {
  watchOne();
  addList(u"Second", {u"AAA.AX"});
  showTrees();
  PriceUpdater& updater = TallymoorInternet::Instance().priceUpdater();
  EXPECT_TRUE(updater.hasCode(u"AAA.AX"));
  chooseFromRow(table(), 0, "Remove stock AAA.AX from watchlist");
  EXPECT_TRUE(updater.hasCode(u"AAA.AX"));
  chooseFromRow(table(u"Second"), 0, "Remove stock AAA.AX from watchlist");
  EXPECT_FALSE(updater.hasCode(u"AAA.AX"));
}

// ---- Commands of a row ----

TEST_F(WatchlistTableTest, RowOffersItsCommands) {
  watchOne();
  showTrees();
  EXPECT_EQ(92, FXuint(WatchlistTable::ID_REMOVE));
  EXPECT_EQ(93, FXuint(WatchlistTable::ID_BUY));
  EXPECT_THAT(popupOfRow(table(), 0, "Buy stock AAA.AX..."),
              ElementsAre("Remove stock AAA.AX from watchlist", "Buy stock AAA.AX..."));
}

TEST_F(WatchlistTableTest, StockIsRemovedForGood) {
  watchOne();
  showTrees();
  leftClick(list());
  chooseFromRow(table(), 0, "Remove stock AAA.AX from watchlist");
  EXPECT_THAT(rowKeys(table()), IsEmpty());
  EXPECT_THAT(table().codes(), IsEmpty());
  EXPECT_FALSE(Settings::Instance().hasEntry(u"Watchlist Main", u"AAA.AX"));
  EXPECT_TRUE(WatchlistSettings::exists(u"Main"));
}

TEST_F(WatchlistTableTest, BuyingOpensTheWindowsOwnWay) {
  watchOne();
  showTrees();
  chooseFromRow(table(), 0, "Buy stock AAA.AX...");
  EXPECT_EQ(1, bought);
}

TEST_F(WatchlistTableTest, RowsOfAPortfoliosListHaveNoPopup) {
  addTrading();
  showTrees();
  leftClick(heldList());
  rightClickRow(*heldList().table(), 0);
  EXPECT_EQ(nullptr, app().getPopupWindow());
}

} // namespace
