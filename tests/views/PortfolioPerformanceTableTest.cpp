#include "views/PortfolioPerformanceTable.h"
#include "PerformanceTableTest.h"
#include "support/windows/OnDisplay.h"
#include "views/CapitalChart.h"
#include "widgets/HandlerScope.h"

using namespace Tallymoor;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PortfolioPerformanceTableTest : public PerformanceTableTest {
protected:
  /// 4,000.00 until February, then 4,100.00; 4,200.00 today.
  void longIndex() {
    market().setHistory(u"^IDX", Date(2020, 1, 2), Date(2026, 2, 27), 4000.0);
    market().setDay(u"^IDX", Date(2026, 3, 2), 4100.0);
    market().setDay(u"^IDX", Date(2026, 3, 3), 4200.0);
  }
  /// Cash that grows by interest of 33.1% in three years, 10% of it in the last year.
  SharePortfolioUser& addFiveYears() {
    SharePortfolioUser& user = addPortfolio(u"Trading", 1000.0, Date(2021, 2, 1));
    user.creditCash(Date(2024, 1, 10), 100.0, CASH_EVENT_INTEREST, u"INTEREST 2024");
    user.creditCash(Date(2025, 1, 10), 110.0, CASH_EVENT_INTEREST, u"INTEREST 2025");
    user.creditCash(Date(2026, 1, 10), 121.0, CASH_EVENT_INTEREST, u"INTEREST 2026");
    return user;
  }
  /// Clicks a column header.
  void clickHeader(Table& table, const String& title) {
    FXHeader& header = *table.getColumnHeader();
    header.getTarget()->handle(&header, FXSEL(SEL_COMMAND, header.getSelector()),
                               reinterpret_cast<void*>(FXival(columnOf(table, title))));
    letEventsPass();
  }
  /// Right-clicks a column header and chooses from its popup.
  void chooseFromHeader(Table& table, const String& title, const std::string& entry,
                        const std::function<void()>& expected) {
    whenModal(entry, [this, entry](FXWindow& popup) { press(popup, entry); });
    expected(); // Queues the handling of what the command opens.
    FXHeader& header = *table.getColumnHeader();
    FXEvent event{};
    event.win_x = header.getItemOffset(columnOf(table, title)) + 3;
    event.win_y = 5;
    bringToFront(table);
    header.getTarget()->handle(&header, FXSEL(SEL_RIGHTBUTTONRELEASE, header.getSelector()), &event);
    letEventsPass();
  }
  static std::vector<std::string> shownTitles(const Table& table) {
    std::vector<std::string> all;
    for (const Column* column : table.visibleColumns())
      all.push_back(column->title().toUTF8());
    return all;
  }
  static std::vector<std::string> column(const Table& table, const String& title) {
    std::vector<std::string> texts;
    for (FXint row = 0; row < table.getNumRows(); ++row)
      texts.push_back(cellText(table, row, title));
    return texts;
  }
};

// ---- Columns and rows ----

TEST_F(PortfolioPerformanceTableTest, DeclaresItsColumnsInOrder) {
  addTrading();
  showTree();
  EXPECT_THAT(titles(table()),
              ElementsAre("Total Capital", "Index", "1 Month", "Brokerage %", "1 Month Index", "3 Months",
                          "3 Months Index", "6 Months", "6 Months Index", "9 Months", "9 Months Index",
                          "12 Months", "12 Months Index", "3 Years Ann.", "3 Years Index Ann.",
                          "5 Years Ann.", "5 Years Index Ann.", "Fin Year", "Fin Year Index", "Cal Year",
                          "Cal Year Index", "External Flow"));
  for (const auto& column : table().columns()) {
    const std::string title = column->title().toUTF8();
    const bool isMoney = title == "Total Capital" || title == "External Flow";
    EXPECT_EQ(isMoney ? 3 : title == "Index" ? 5 : 4, column->compareType()) << title;
    EXPECT_EQ(title.find("Ann.") == std::string::npos, column->defaultVisible()) << title;
    EXPECT_EQ(FXuint(FXTableItem::RIGHT), column->justify()) << title;
    EXPECT_FALSE(column->editable()) << title;
  }
  EXPECT_EQ(String(u"Trading"), table().name());
}

TEST_F(PortfolioPerformanceTableTest, TotalHasNoColumnsOfAnIndex) {
  longIndex();
  addTrading().setComparisonIndex(u"^IDX");
  showTree();
  EXPECT_THAT(titles(totalTable()), ElementsAre("Total Capital", "1 Month", "Brokerage %", "3 Months",
                                                "6 Months", "9 Months", "12 Months", "3 Years Ann.",
                                                "5 Years Ann.", "Fin Year", "Cal Year", "External Flow"));
  EXPECT_EQ(String(u"TotalCapPortfoliosTable"), totalTable().name());
}

TEST_F(PortfolioPerformanceTableTest, CellsHaveTheirTypes) {
  longIndex();
  addGrowing().setComparisonIndex(u"^IDX");
  showTree();
  const std::map<std::string, CellResultType> types = {
      {"Total Capital", CELL_MONEY},   {"Index", CELL_TEXT},
      {"1 Month", CELL_PERCENT},       {"Brokerage %", CELL_PERCENT},
      {"1 Month Index", CELL_PERCENT}, {"12 Months Index", CELL_PERCENT},
      {"12 Months", CELL_TEXT}, // Empty.
      {"External Flow", CELL_MONEY}};
  for (const auto& column : table().columns()) {
    const auto type = types.find(column->title().toUTF8());
    if (type != types.end()) {
      EXPECT_EQ(type->second, column->result(*table().rowAt(0)).type()) << type->first;
    }
  }
}

TEST_F(PortfolioPerformanceTableTest, RowsGoBackMonthByMonthToTheFirstRecord) {
  addPortfolio(u"Old", 100.0, Date(2025, 11, 30));
  addPortfolio(u"Young", 100.0, Date(2026, 2, 10));
  showTree();
  EXPECT_THAT(rowKeys(table(u"Old")),
              ElementsAre("03/03/2026", "28/02/2026", "31/01/2026", "31/12/2025", "30/11/2025"));
  EXPECT_THAT(rowKeys(table(u"Young")), ElementsAre("03/03/2026", "28/02/2026"));
  EXPECT_EQ(rowKeys(table(u"Old")), rowKeys(totalTable()));
  EXPECT_THAT(column(totalTable(), u"Total Capital"),
              ElementsAre("$200.00", "$200.00", "$100.00", "$100.00", "$100.00"));
}

TEST_F(PortfolioPerformanceTableTest, RowStartsOnTheLastDayOfTheMonthBefore) {
  addTrading();
  showTree();
  const PerformanceRow& first = table().rowAt(0)->payload<PerformanceRow>();
  EXPECT_EQ(Date(2026, 3, 3), first.end);
  EXPECT_EQ(Date(2026, 2, 28), first.start);
  EXPECT_EQ(Date(2026, 1, 31), table().rowAt(1)->payload<PerformanceRow>().start);
}

TEST_F(PortfolioPerformanceTableTest, ViewDateIsTheFirstRow) {
  addPortfolio(u"Old", 100.0, Date(2025, 11, 30));
  showTree();
  viewDate(Date(2026, 1, 15));
  EXPECT_THAT(rowKeys(table(u"Old")), ElementsAre("15/01/2026", "31/12/2025", "30/11/2025"));
  EXPECT_THAT(rowKeys(totalTable()), ElementsAre("15/01/2026", "31/12/2025", "30/11/2025"));
  viewDate(Date(2025, 11, 29));
  EXPECT_EQ(0, table(u"Old").getNumRows());
}

TEST_F(PortfolioPerformanceTableTest, RowsHaveNoPopup) {
  addTrading();
  showTree();
  rightClickRow(table(), 0); // A popup would fail the test.
  letEventsPass();
  EXPECT_TRUE(table().isRowSelected(0));
}

// ---- Figures ----

TEST_F(PortfolioPerformanceTableTest, DepositsAreNoGain) {
  addGrowing();
  showTree();
  EXPECT_EQ("$1,200.00", cellText(table(), 0, u"Total Capital"));
  EXPECT_EQ("10.00%", cellText(table(), 0, u"1 Month"));
  EXPECT_EQ("$100.00", cellText(table(), 0, u"External Flow"));
  EXPECT_EQ("10.00%", cellText(totalTable(), 0, u"1 Month"));
  EXPECT_EQ("$100.00", cellText(totalTable(), 0, u"External Flow"));
  // There is no record at the start of the first deposit's month.
  EXPECT_EQ("", cellText(table(), 1, u"1 Month"));
  EXPECT_EQ("$1,000.00", cellText(table(), 1, u"External Flow"));
}

TEST_F(PortfolioPerformanceTableTest, CapitalOfZeroLeavesTheCellEmpty) {
  SharePortfolioUser& user = addPortfolio(u"Trading", 50.0, Date(2025, 11, 30));
  user.debitCash(Date(2025, 12, 1), 50.0, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL all");
  user.creditCash(Date(2026, 3, 2), 80.0, CASH_EVENT_DEPOSIT, u"DEPOSIT again");
  showTree();
  EXPECT_EQ("$80.00", cellText(table(), 0, u"Total Capital"));
  EXPECT_EQ("", cellText(table(), 0, u"1 Month"));
  EXPECT_EQ("", cellText(table(), 0, u"Brokerage %"));
  EXPECT_EQ("", cellText(table(), 1, u"External Flow")); // Rounds to zero.
}

TEST_F(PortfolioPerformanceTableTest, BrokerageIsThatOfTheMonth) {
  addTrading(); // 30.00 and 20.00 in February, which starts without a record.
  portfolios()[u"Trading"]->buyShares(u"AAA.AX", {Date(2026, 3, 2), 10, 6.0, 50.25, String()});
  showTree();
  EXPECT_EQ("1.00%", cellText(table(), 0, u"Brokerage %")); // Of 5,025.00.
  EXPECT_EQ("", cellText(table(), 1, u"Brokerage %"));
}

TEST_F(PortfolioPerformanceTableTest, YoungPortfolioIsLeftOutOfTheTotalsGain) {
  addGrowing();
  addPortfolio(u"Young", 500.0, Date(2026, 3, 1));
  showTree();
  EXPECT_EQ("10.00%", cellText(totalTable(), 0, u"1 Month"));
  EXPECT_EQ("$1,700.00", cellText(totalTable(), 0, u"Total Capital"));
  EXPECT_EQ("$600.00", cellText(totalTable(), 0, u"External Flow"));
}

TEST_F(PortfolioPerformanceTableTest, FiveYearsShowTheirMonthsAndGrowthAYear) {
  longIndex();
  addFiveYears().setComparisonIndex(u"^IDX");
  for (const String title : {u"3 Years Ann.", u"3 Years Index Ann.", u"5 Years Ann.", u"5 Years Index Ann."})
    Settings::Instance().writeUnsigned(u"Visible Columns Trading", title, 1);
  Settings::Instance().writeUnsigned(u"Upgrades", u"Visible Columns Trading", 1);
  showTree();
  ASSERT_EQ(62, table().getNumRows());
  EXPECT_EQ("03/03/2026", rowKeys(table()).front());
  EXPECT_EQ("28/02/2021", rowKeys(table()).back());
  EXPECT_EQ("$1,331.00", cellText(table(), 0, u"Total Capital"));
  EXPECT_EQ("10.00%", cellText(table(), 0, u"12 Months"));
  EXPECT_EQ("10.00%", cellText(table(), 0, u"3 Years Ann."));
  EXPECT_EQ("5.89%", cellText(table(), 0, u"5 Years Ann."));
  EXPECT_EQ("1.64%", cellText(table(), 0, u"3 Years Index Ann.")); // 5% in total.
  EXPECT_EQ("0.98%", cellText(table(), 0, u"5 Years Index Ann."));
  // Both need a record of the day on which the five years began.
  EXPECT_EQ("5.89%", cellText(table(), 1, u"5 Years Ann."));
  EXPECT_EQ("", cellText(table(), 2, u"5 Years Ann."));
  EXPECT_EQ("", cellText(table(), 2, u"5 Years Index Ann."));
  EXPECT_EQ("0.00%", cellText(table(), 61, u"12 Months Index"));
}

TEST_F(PortfolioPerformanceTableTest, YearsBeginWithTheirMonths) {
  addFiveYears();
  showTree();
  EXPECT_EQ("10.00%", cellText(table(), 0, u"Cal Year")); // Since 31 December 2025.
  EXPECT_EQ("10.00%", cellText(table(), 0, u"Fin Year")); // Since 30 June 2025.
  const FXint december = table().getRow(u"31/12/2025");
  EXPECT_EQ("10.00%", cellText(table(), december, u"Cal Year")); // Since 31 December 2024.
  EXPECT_EQ("0.00%", cellText(table(), december, u"Fin Year"));
  EXPECT_EQ("0.00%", cellText(table(), table().getRow(u"31/08/2025"), u"Fin Year"));
}

// ---- The index ----

TEST_F(PortfolioPerformanceTableTest, IndexStandsBesideThePortfolio) {
  longIndex();
  addGrowing().setComparisonIndex(u"^IDX");
  showTree();
  EXPECT_EQ("4200.00", cellText(table(), 0, u"Index"));
  EXPECT_EQ("4000.00", cellText(table(), 1, u"Index"));
  for (const String title : {u"1 Month Index", u"3 Months Index", u"6 Months Index", u"9 Months Index",
                             u"12 Months Index", u"Fin Year Index", u"Cal Year Index"}) {
    EXPECT_EQ("5.00%", cellText(table(), 0, title)) << title.toUTF8();
    EXPECT_EQ("0.00%", cellText(table(), 1, title)) << title.toUTF8();
  }
}

TEST_F(PortfolioPerformanceTableTest, WithoutAnIndexItsColumnsAreEmpty) {
  addGrowing();
  showTree();
  for (const String title : {u"Index", u"1 Month Index", u"12 Months Index", u"Fin Year Index"})
    EXPECT_THAT(column(table(), title), Each(std::string())) << title.toUTF8();
  EXPECT_THAT(market().requested(MarketFixture::Page::History), Each(String(u"AAA.AX")));
}

TEST_F(PortfolioPerformanceTableTest, HeadingsSayFromWhenTheyCount) {
  addGrowing().setComparisonIndex(u"^IDX");
  market().setHistory(u"^IDX", Date(2024, 1, 1), Date(2026, 3, 3), 4000.0);
  showTree();
  const auto tip = [this](const String& title) {
    return table().columnAt(columnOf(table(), title))->toolTip();
  };
  EXPECT_EQ(u"Gain since the last day of the month before.", tip(u"1 Month"));
  EXPECT_EQ(u"Gain since the last day of the month three months before.", tip(u"3 Months"));
  EXPECT_EQ(
      u"Gain of the index since the last day of the month twelve months before. A watchlist counts from "
      u"the day itself.",
      tip(u"12 Months Index"));
}

TEST_F(PortfolioPerformanceTableTest, AnUnavailableIndexIsRequestedOnce) {
  SharePortfolioUser& user = addFiveYears();
  user.setComparisonIndex(u"^IDX");
  market().setHistory(u"^IDX", Date(2020, 6, 1), Date(2026, 3, 3), 4000.0);
  market().refuse(MarketFixture::Page::History, 500);
  whenModal("Do you want to retry?", [this](FXWindow& box) { press(box, "No"); });
  showTree();
  EXPECT_THAT(column(table(), u"Index"), Each(std::string()));
  EXPECT_EQ("10.00%", cellText(table(), 0, u"12 Months"));
  EXPECT_EQ("0.00% (failed)", figure(node(u"Trading"), "Gain today (index)"));
  EXPECT_LE(market().requested(MarketFixture::Page::History).size(), 6u);
}

TEST_F(PortfolioPerformanceTableTest, IndexYoungerThanThePortfolioIsEmptyBefore) {
  addFiveYears().setComparisonIndex(u"^IDX");
  market().setHistory(u"^IDX", Date(2025, 6, 2), Date(2026, 3, 3), 4000.0);
  showTree();
  EXPECT_EQ("4000.00", cellText(table(), table().getRow(u"30/06/2025"), u"Index"));
  EXPECT_EQ("", cellText(table(), table().getRow(u"31/05/2025"), u"Index"));
  EXPECT_EQ("", cellText(table(), 0, u"12 Months Index"));
  EXPECT_EQ("0.00%", cellText(table(), 0, u"6 Months Index"));
  const std::size_t fetches = market().requested(MarketFixture::Page::History).size();
  leftClick(node(u"Trading"));
  EXPECT_EQ(fetches, market().requested(MarketFixture::Page::History).size());
}

TEST_F(PortfolioPerformanceTableTest, NewIndexFillsItsColumnsAtOnce) {
  longIndex();
  addGrowing();
  showTree();
  choose(node(u"Trading"), "Set portfolio comparison index...", [this] {
    whenModal("Portfolio Properties", [this](FXWindow& dialog) {
      type(field(dialog, "Comparison Index"), "^IDX");
      press(dialog, "OK");
    });
  });
  EXPECT_EQ("4200.00", cellText(table(), 0, u"Index"));
}

// ---- Prices ----

TEST_F(PortfolioPerformanceTableTest, PriceOfAShareRefreshesTheFirstRow) {
  addGrowing();
  showTree();
  market().setCurrentPrice(u"AAA.AX", 12.0);
  runPass();
  EXPECT_EQ("$1,300.00", cellText(table(), 0, u"Total Capital"));
  EXPECT_EQ("20.00%", cellText(table(), 0, u"1 Month"));
  EXPECT_EQ("$1,000.00", cellText(table(), 1, u"Total Capital"));
  EXPECT_EQ("$1,300.00", cellText(totalTable(), 0, u"Total Capital"));
  EXPECT_EQ("$1,300.00", figure(node(u"Trading"), "Total Capital"));
  EXPECT_EQ("$1,300.00", figure(root(), "Total Capital"));
}

TEST_F(PortfolioPerformanceTableTest, PriceOfTheIndexRefreshesTheFirstRow) {
  longIndex();
  addGrowing().setComparisonIndex(u"^IDX");
  showTree();
  market().setCurrentPrice(u"AAA.AX", 11.0);
  market().setCurrentPrice(u"^IDX", 4400.0);
  runPass();
  EXPECT_EQ("4400.00", cellText(table(), 0, u"Index"));
  EXPECT_EQ("10.00%", cellText(table(), 0, u"1 Month Index"));
  EXPECT_EQ("4000.00", cellText(table(), 1, u"Index"));
}

TEST_F(PortfolioPerformanceTableTest, CorrectedCloseRefreshesTheRowsFromItsDayOn) {
  addGrowing();
  showTree();
  const Date day(2026, 2, 28);
  {
    BigMutexLock lock;
    portfolios()[u"Trading"]->capitalRecord().historicalPriceChanged(u"AAA.AX", day, 10.5);
    table().historicalPriceChanged(u"AAA.AX", day, 10.5);
  }
  letEventsPass();
  EXPECT_EQ("$1,050.00", cellText(table(), 1, u"Total Capital"));
  EXPECT_EQ("4.76%", cellText(table(), 0, u"1 Month"));
}

TEST_F(PortfolioPerformanceTableTest, DaysWithSubstitutePricesHaveAStarUntilTheirPricesArrive) {
  SharePortfolioUser& user = addPortfolio(u"Trading", 2000.0, Date(2026, 1, 2));
  market().setHistory(u"AAA.AX", Date(2026, 1, 1), Date(2026, 2, 25), 10.0);
  user.buyShares(u"AAA.AX", {Date(2026, 2, 2), 100, 10.0, 0.0, String()});
  TallymoorInternet::Instance().historicalPrice(u"AAA.AX", Date(2026, 2, 25), true);
  TallymoorInternet::Instance().goOffline();
  showTree();
  const std::vector<std::string> marked{"$2,000.00 *", "$2,000.00 *", "$2,000.00"};
  EXPECT_EQ(marked, column(table(), u"Total Capital"));
  EXPECT_EQ(marked, column(totalTable(), u"Total Capital"));
  EXPECT_EQ("$2,000.00", figure(node(u"Trading"), "Total Capital")) << "only the table bears the mark";

  market().setHistory(u"AAA.AX", Date(2026, 2, 26), Date(2026, 3, 2), 11.0);
  market().setCurrentPrice(u"AAA.AX", 12.0);
  market().addListing(u"TEST", u"test", u"Australia"); // Going online searches for it.
  ASSERT_TRUE(TallymoorInternet::Instance().reconnect());
  TallymoorInternet::Instance().pauseUpdates();
  runPass();
  const std::vector<std::string> settled{"$2,200.00", "$2,100.00", "$2,000.00"};
  EXPECT_EQ(settled, column(table(), u"Total Capital"));
  EXPECT_EQ(settled, column(totalTable(), u"Total Capital"));
  EXPECT_EQ("$2,200.00", figure(node(u"Trading"), "Total Capital"));
}

TEST_F(PortfolioPerformanceTableTest, OtherCodesRefreshNothing) {
  addGrowing();
  showTree();
  table(); // has been made
  // The table is not informed; a refresh would show the change.
  portfolios()[u"Trading"]->capitalRecord().historicalPriceChanged(u"AAA.AX", Date(2026, 3, 3), 20.0);
  {
    BigMutexLock lock;
    table().currentPriceUpdated(u"ZZZ.AX", 1.0);
    table().pricesUpdateFinished();
  }
  letEventsPass();
  EXPECT_EQ("$1,200.00", cellText(table(), 0, u"Total Capital"));
}

TEST_F(PortfolioPerformanceTableTest, RowsStayAfterMidnightUntilTheUsersNextAction) {
  addGrowing();
  showTree();
  table(); // has been made
  profile().setToday(Date(2026, 3, 4));
  market().setDay(u"AAA.AX", Date(2026, 3, 4), 12.0);
  market().setCurrentPrice(u"AAA.AX", 12.0);
  runPass();
  EXPECT_THAT(rowKeys(table()), ElementsAre("03/03/2026", "28/02/2026"));
  EXPECT_EQ("$1,200.00", cellText(table(), 0, u"Total Capital"));
  leftClick(node(u"Trading"));
  EXPECT_THAT(rowKeys(table()), ElementsAre("04/03/2026", "28/02/2026"));
  EXPECT_EQ("$1,300.00", cellText(table(), 0, u"Total Capital"));
}

// ---- Changes ----

TEST_F(PortfolioPerformanceTableTest, TransactionShowsInBothTables) {
  addGrowing();
  showTree();
  choose(node(u"Trading"), "Deposit cash...", [this] { enterCash("Deposit cash", "300", "salary"); });
  EXPECT_EQ("$400.00", cellText(table(), 0, u"External Flow"));
  EXPECT_EQ("10.00%", cellText(table(), 0, u"1 Month"));
  EXPECT_EQ("$1,500.00", cellText(totalTable(), 0, u"Total Capital"));
  EXPECT_EQ("$400.00", cellText(totalTable(), 0, u"External Flow"));
}

TEST_F(PortfolioPerformanceTableTest, BrokerageFollowsTheTransaction) {
  addGrowing();
  showTree();
  EXPECT_EQ("0.00%", cellText(table(), 0, u"Brokerage %"));
  node(u"Trading").portfolio().buyShares(u"AAA.AX", {Date(2026, 3, 3), 1, 11.0, 10.0, String()});
  node(u"Trading").transactionMade();
  EXPECT_EQ("1.00%", cellText(table(), 0, u"Brokerage %")); // Of 1,000.00.
  EXPECT_EQ("1.00%", cellText(totalTable(), 0, u"Brokerage %"));
}

TEST_F(PortfolioPerformanceTableTest, HiddenFiguresAreUpdatedWhenTheirPageIsShown) {
  SharePortfolioUser& user = addGrowing();
  showTree();
  leftClick(*node(u"Trading").cashReserveItem());
  PortfolioPerformanceTable& unseen = *find<PortfolioPerformanceTable>(*node(u"Trading").page());
  {
    const HandlerScope scope;
    node(u"Trading").transactionMade();
    user.creditCash(Date(2026, 3, 3), 300.0, CASH_EVENT_DEPOSIT, u"DEPOSIT salary");
  }
  EXPECT_TRUE(unseen.hasChangedRecords()) << "invisible cells are not computed";
  leftClick(node(u"Trading"));
  EXPECT_FALSE(unseen.hasChangedRecords());
  EXPECT_EQ("$400.00", cellText(unseen, 0, u"External Flow"));
  EXPECT_EQ("$1,500.00", figure(node(u"Trading"), "Total Capital"));
  leftClick(root());
  EXPECT_EQ("$400.00", cellText(totalTable(), 0, u"External Flow"));
  EXPECT_EQ("$1,500.00", figure(root(), "Total Capital"));
}

TEST_F(PortfolioPerformanceTableTest, DeletedPortfolioLeavesTheTotal) {
  addGrowing();
  addPortfolio(u"Another", 300.0);
  showTree();
  EXPECT_EQ("$1,500.00", cellText(totalTable(), 0, u"Total Capital"));
  choose(node(u"Trading"), "Delete share portfolio Trading...",
         [this] { answer("Are you sure you want to delete share portfolio Trading?", "Yes"); });
  EXPECT_EQ("$300.00", cellText(totalTable(), 0, u"Total Capital"));
  EXPECT_EQ(1u, totalTable().portfolios().size());
  runPass();
}

TEST_F(PortfolioPerformanceTableTest, NewPortfolioJoinsTheTotal) {
  addGrowing();
  showTree();
  addPortfolio(u"Another", 300.0);
  root().reloadPortfolios();
  EXPECT_EQ("$1,500.00", cellText(totalTable(), 0, u"Total Capital"));
}

// ---- The table's own commands ----

TEST_F(PortfolioPerformanceTableTest, ColumnsAreShownSortedHiddenAndReset) {
  longIndex();
  addFiveYears().setComparisonIndex(u"^IDX");
  showTree();
  leftClick(node(u"Trading"));
  const std::vector<std::string> usual = shownTitles(table());
  chooseFromHeader(table(), u"1 Month", "Select columns...", [this] {
    whenModal("Choose Columns", [this](FXWindow& list) {
      for (const char* title : {"3 Years Ann.", "3 Years Index Ann.", "5 Years Ann.", "5 Years Index Ann."})
        press(list, title);
      press(list, "OK");
    });
  });
  EXPECT_EQ(titles(table()), shownTitles(table()));
  for (const std::string& title : shownTitles(table())) {
    const String name(title.c_str());
    clickHeader(table(), name);
    clickHeader(table(), name);
    EXPECT_EQ(62, table().getNumRows()) << title;
    EXPECT_THAT(column(table(), name), testing::Not(testing::Contains("error"))) << title;
  }
  clickHeader(table(), u"Total Capital");
  const bool wasReversed = table().sortReversed();
  EXPECT_EQ(wasReversed ? "$1,331.00" : "$1,000.00", column(table(), u"Total Capital").front());
  EXPECT_EQ(wasReversed ? "$1,000.00" : "$1,331.00", column(table(), u"Total Capital").back());
  chooseFromHeader(table(), u"Total Capital", "Remove column \"Total Capital\"",
                   [this] { answer("Do you want to hide column \"Total Capital\"?", "Yes"); });
  EXPECT_EQ(-1, table().sortColumn());
  EXPECT_EQ("Index", shownTitles(table()).front());
  chooseFromHeader(table(), u"1 Month", "Reset columns to defaults",
                   [this] { answer("Do you want to reset columns to default?", "Yes"); });
  EXPECT_EQ(usual, shownTitles(table()));
  EXPECT_EQ(12u, totalTable().columns().size()); // Its own columns are unchanged.
}

TEST_F(PortfolioPerformanceTableTest, ChoiceOfColumnsFollowsThePortfolioToItsNewName) {
  addGrowing();
  showTree();
  table(); // has been made
  Settings::Instance().writeUnsigned(u"Visible Columns Trading", u"9 Months", 0);
  table().updateTable();
  root().renamePortfolio(u"Trading", u"Savings");
  EXPECT_THAT(shownTitles(table(u"Savings")), testing::Not(testing::Contains("9 Months")));
  EXPECT_TRUE(Settings::Instance().keys(u"Visible Columns Trading").empty());
}

// ---- The bar between table and chart ----

class PerformanceViewTest : public PortfolioPerformanceTableTest {
protected:
  PerformanceView& view() { return *node(u"Trading").performance(); }
  /// Ends a drag of the bar at this position.
  static void moveLine(PerformanceView& view, FXint y) {
    view.setSplit(0, y);
    view.handle(&view, FXSEL(SEL_COMMAND, PerformanceView::ID_SPLITTER), nullptr);
  }
};

TEST_F(PerformanceViewTest, BothPartsCanBeUsedInASmallWindow) {
  addGrowing();
  addPortfolio(u"Another", 300.0);
  mainWindow().resize(800, 600);
  showTree();
  leftClick(root());
  EXPECT_GE(totalTable().getHeight(), 90);
  EXPECT_GE(root().performance()->chart().getHeight(), 120);
  leftClick(node(u"Trading"));
  EXPECT_GE(table().getHeight(), 90);
  EXPECT_GE(view().chart().getHeight(), 120);
}

/// As at a start: the first page is filled before it has a height.
TEST_F(PerformanceViewTest, TheTableOfAPageFilledWithoutHeightIsShown) {
  SharePortfolioUser& growing = addGrowing();
  auto* page =
      new FXVerticalFrame(mainWindow().contentFrame(), LAYOUT_FILL_X | LAYOUT_FIX_HEIGHT, 0, 0, 0, 0);
  auto* early = new PerformanceView(page, {&growing}, false, u"Trading", nullptr);
  early->update();
  page->create();
  page->setHeight(400);
  settle();
  EXPECT_TRUE(isOnDisplay(early->table()));
  EXPECT_TRUE(isOnDisplay(early->chart()));
}

TEST_F(PerformanceViewTest, TheBarKeepsItsPositionOnAllPages) {
  addGrowing();
  showTree();
  leftClick(node(u"Trading"));
  const FXint height = view().getHeight();
  moveLine(view(), height * 3 / 10);
  settle();
  EXPECT_NEAR(height * 3 / 10, view().getSplit(0), 2);
  leftClick(root());
  EXPECT_NEAR(root().performance()->getHeight() * 3 / 10, root().performance()->getSplit(0), 2);
  EXPECT_NEAR(300, double(Settings::Instance().readUnsigned(u"Gui Settings", u"Y Splitter Performance")), 3);
  mainWindow().resize(900, 950);
  leftClick(node(u"Trading"));
  settle();
  EXPECT_NEAR(view().getHeight() * 3 / 10, view().getSplit(0), 4);
}

TEST_F(PerformanceViewTest, NeitherPartIsEverLost) {
  Settings::Instance().writeUnsigned(u"Gui Settings", u"Y Splitter Performance", 5000);
  addGrowing();
  showTree();
  leftClick(node(u"Trading"));
  EXPECT_NEAR(view().getHeight() * 9 / 10, view().getSplit(0), 2);
}

} // namespace
