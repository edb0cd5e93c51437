#include "ShellTest.h"
#include "shell/WarningStrip.h"
#include "views/CashReserveTreeItem.h"
#include "views/DividendsTreeItem.h"
#include "views/PortfolioTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/SharesSoldTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/InvestmentTree.h"
#include "widgets/TableItem.h"
#include "xml/PortfolioRecords.h"
#include <gmock/gmock.h>
#include <map>

namespace Tallymoor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A portfolio kept day by day from 5 January to 3 March 2026, then viewed at past dates. Prices: AAA.AX
/// 12.00, 5.90 after its split on 19 January, 7.00 in February; BBB.AX 4.00, 4.60 in February; the index
/// 8,000 in January, 8,400 in February.
class ViewDateReplayTest : public ShellTest {
protected:
  using Row = std::vector<std::string>;
  /// All texts of all pages: by node, its table rows and its labels.
  using Snapshot = std::map<std::string, std::vector<Row>>;

  ViewDateReplayTest() {
    profile().setToday(Date(2026, 1, 5));
    const auto price = [this](const String& code, double early, double afterSplit, double february) {
      market().setHistory(code, Date(2024, 10, 1), Date(2026, 1, 16), early);
      market().setHistory(code, Date(2026, 1, 19), Date(2026, 1, 30), afterSplit);
      market().setHistory(code, Date(2026, 2, 2), Date(2026, 3, 3), february);
    };
    price(u"AAA.AX", 12.0, 5.9, 7.0);
    price(u"BBB.AX", 4.0, 4.0, 4.6);
    price(u"^AORD", 8000.0, 8000.0, 8400.0);
  }

  void SetUp() override {
    ShellTest::SetUp();
    whenModal("New Portfolio", [this](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), "Trading");
      press(dialog, "OK");
    });
    command(TallymoorWindow::ID_NEW_PORTFOLIO);
    m_portfolio = tallymoor().store().portfolios().at(u"Trading").get();
    m_portfolio->portfolio().subElement(u"ComparisonIndex").setValue(u"^AORD");
  }

  // ---- The two months ----

  void keepTheRecords() {
    SharePortfolioUser& user = *m_portfolio;
    on(Date(2026, 1, 5), [&] { user.creditCash(today(), 10000, CASH_EVENT_DEPOSIT, u"DEPOSIT start"); });
    on(Date(2026, 1, 6), [&] { user.buyShares(u"AAA.AX", {today(), 100, 10, 20, String()}); });
    on(Date(2026, 1, 12), [&] { user.buyShares(u"BBB.AX", {today(), 200, 4, 20, String()}); });
    on(Date(2026, 1, 13), [] {});
    whenModal("Possible share split", [this](FXWindow& dialog) { press(dialog, "OK"); });
    on(Date(2026, 1, 26), [] {});
    on(Date(2026, 1, 27), [&] { user.sellShares(u"BBB.AX", {today(), 80, 4.5, 20, String()}, true); });
    on(Date(2026, 2, 2), [&] {
      user.receiveDividend({u"AAA.AX", today(), 200, 0.1, 100, 0, 0, String(), 0});
    });
    on(Date(2026, 2, 9), [&] { user.sellShares(u"AAA.AX", {today(), 200, 7, 20, String()}, true); });
    on(Date(2026, 2, 16), [&] { user.buyShares(u"AAA.AX", {today(), 50, 7.2, 20, String()}); });
    on(Date(2026, 2, 23), [&] { user.creditCash(today(), 5.5, CASH_EVENT_INTEREST, u"INTEREST February"); });
    on(Date(2026, 3, 3), [] {});
  }
  /// A day: enters its transactions and records what the window shows.
  void on(const Date& day, const std::function<void()>& enter) {
    profile().setToday(day);
    tallymoor().refreshViews(true);
    enter();
    tallymoor().refreshViews(true);
    letEventsPass();
    m_days[day] = snapshot();
  }
  static Date today() { return Date(); }

  // ---- What is shown ----

  TotalCapTreeItem& root() { return *tallymoor().totalCapital(); }
  SharePortfolioTreeItem& trading() { return *root().portfolioNode(u"Trading"); }
  Snapshot snapshot() {
    Snapshot all;
    all["Total"] = {texts(root())};
    all["Trading"] = {texts(trading())};
    for (PortfolioTableTreeItem* node : std::initializer_list<PortfolioTableTreeItem*>{
             trading().sharesHeldItem(), trading().sharesSoldItem(), trading().dividendsItem(),
             trading().cashReserveItem()}) {
      std::vector<Row>& rows = all[node->label().toUTF8()];
      rows = tableRows(*node->table());
      rows.push_back(texts(*node));
    }
    return all;
  }
  static Row texts(InvestmentTreeItem& node) {
    Row shown;
    for (FXLabel* label : findAll<FXLabel>(*node.page()))
      if (!dynamic_cast<FXButton*>(label))
        shown.push_back(label->getText().text());
    return shown;
  }
  static std::vector<Row> tableRows(Table& table) {
    std::vector<Row> rows;
    for (FXint row = 0; row < table.getNumRows(); ++row) {
      rows.push_back({table.getRowText(row).text()});
      for (const Column* column : table.visibleColumns())
        rows.back().push_back(column->title().toUTF8() + ": " +
                              table.getItemText(row, column->index()).text());
    }
    return rows;
  }
  /// The cells of these columns; "" is the row header.
  static std::vector<Row> shown(PortfolioTableTreeItem& node, const std::vector<std::string>& titles) {
    Table& table = *node.table();
    std::vector<Row> rows;
    for (FXint row = 0; row < table.getNumRows(); ++row) {
      rows.emplace_back();
      for (const std::string& title : titles)
        if (title.empty())
          rows.back().push_back(table.getRowText(row).text());
        else
          for (const Column* column : table.visibleColumns())
            if (column->title().toUTF8() == title)
              rows.back().push_back(table.getItemText(row, column->index()).text());
    }
    return rows;
  }
  static std::string figure(InvestmentTreeItem& node, const std::string& caption) {
    for (FXLabel* label : findAll<FXLabel>(*node.page()))
      if (label->getText().text() == caption)
        return dynamic_cast<FXLabel&>(*label->getNext()).getText().text();
    throw std::runtime_error("no " + caption);
  }
  FXint columnOf(const String& title) {
    for (const Column* column : trading().sharesHeldItem()->table()->visibleColumns())
      if (column->title() == title)
        return column->index();
    throw std::runtime_error("no column");
  }
  void startTyping(FXint row, const String& title, const std::string& text) {
    SharesHeldTable& table = *trading().sharesHeldItem()->table();
    trading().sharesHeldItem()->activate();
    table.startInput(row, columnOf(title));
    find<FXTextField>(table)->setText(text.c_str());
  }
  FXColor heldTint(FXint row) {
    return dynamic_cast<TableItem&>(*trading().sharesHeldItem()->table()->getItem(row, 0)).colour();
  }
  std::size_t fetches() { return market().requested(MarketFixture::Page::History).size(); }

  SharePortfolioUser* m_portfolio = nullptr;
  std::map<Date, Snapshot> m_days;
};

/// Sales, a split, a share sold and bought again: later events must not be visible.
TEST_F(ViewDateReplayTest, EachDayShowsWhatItShowedWhenItWasToday) {
  keepTheRecords();
  for (auto day = m_days.rbegin(); day != m_days.rend(); ++day) {
    if (day->first == Date(2026, 3, 3))
      continue;
    pickViewDate(day->first);
    const Snapshot now = snapshot();
    for (const auto& [page, rows] : day->second)
      EXPECT_EQ(rows, now.at(page)) << page << " on " << day->first.toString(DATE_DISPLAY_DMY).toUTF8();
  }
}

TEST_F(ViewDateReplayTest, ThirteenthOfJanuaryAgreesWithTheSheet) {
  keepTheRecords();
  pickViewDate(Date(2026, 1, 13));
  // 10,000.00 less 1,020.00 and 820.00; 100 at 12.00 and 200 at 4.00.
  EXPECT_EQ("$8,160.00", figure(trading(), "Capital in cash"));
  EXPECT_EQ("$2,000.00", figure(trading(), "Capital in shares"));
  EXPECT_EQ("$10,160.00", figure(root(), "Total Capital"));
  EXPECT_THAT(
      shown(*trading().sharesHeldItem(), {"", "Number", "Buy Price", "Price Now", "Purchase Value",
                                          "Current Value", "Gross Gain $", "Days Held"}),
      ElementsAre(ElementsAre("AAA.AX", "100.00", "10.00", "12.00", "$1,000.00", "$1,200.00", "$200.00", "7"),
                  ElementsAre("BBB.AX", "200.00", "4.00", "4.00", "$800.00", "$800.00", "$0.00", "1")));
  EXPECT_THAT(shown(*trading().sharesSoldItem(), {""}), IsEmpty());
  EXPECT_THAT(shown(*trading().dividendsItem(), {""}), IsEmpty());
  EXPECT_THAT(shown(*trading().cashReserveItem(), {"", "Description", "Balance"}),
              ElementsAre(ElementsAre("05/01/2026", "DEPOSIT start", "$10,000.00"),
                          ElementsAre("06/01/2026", "BUY 100.00 of AAA.AX @ 10.0000", "$8,980.00"),
                          ElementsAre("12/01/2026", "BUY 200.00 of BBB.AX @ 4.0000", "$8,160.00")));
  EXPECT_EQ(nullptr, trading().sharesHeldItem()->firstChild());
}

TEST_F(ViewDateReplayTest, TenthOfFebruaryAgreesWithTheSheet) {
  keepTheRecords();
  pickViewDate(Date(2026, 2, 10));
  // 8,160.00 plus the sale of 340.00, the dividend of 20.00 and the sale of 1,380.00.
  EXPECT_EQ("$9,900.00", figure(trading(), "Capital in cash"));
  EXPECT_EQ("$552.00", figure(trading(), "Capital in shares"));
  EXPECT_THAT(
      shown(*trading().sharesHeldItem(), {"", "Number", "Buy Price", "Purchase Value", "Current Value"}),
      ElementsAre(ElementsAre("BBB.AX", "120.00", "4.00", "$480.00", "$552.00")));
  EXPECT_THAT(shown(*trading().sharesSoldItem(), {"", "Stock Code", "Num Sold", "Gross Profit"}),
              ElementsAre(ElementsAre("27/01/2026", "BBB.AX", "80.00", "$40.00"),
                          ElementsAre("09/02/2026", "AAA.AX", "200.00", "$400.00")));
  EXPECT_THAT(shown(*trading().dividendsItem(), {"", "Code", "Value"}),
              ElementsAre(ElementsAre("02/02/2026", "AAA.AX", "$20.00")));
  EXPECT_EQ("0.00% (0.00%)", figure(trading(), "Gain today (index)"));
}

TEST_F(ViewDateReplayTest, TodayIsTheSameAfterwards) {
  keepTheRecords();
  market().setCurrentPrice(u"AAA.AX", 7.1); // Different from the day's price in the history.
  market().setCurrentPrice(u"BBB.AX", 4.7);
  market().setCurrentPrice(u"^AORD", 8450.0);
  TallymoorInternet::Instance().priceUpdater().runPass();
  letEventsPass();
  const Snapshot before = snapshot();
  for (const Date& date : {Date(2026, 3, 2), Date(2026, 2, 10), Date(2026, 1, 13), Date(2025, 12, 1)})
    pickViewDate(date);
  press(tallymoor(), "Back a week");
  pickViewDate(Date(2026, 3, 3));
  TallymoorInternet::Instance().pauseUpdates(); // A pass would bring the same prices again.
  EXPECT_EQ(before, snapshot());
  EXPECT_EQ("7.10", shown(*trading().sharesHeldItem(), {"Price Now"}).at(0).at(0));
}

TEST_F(ViewDateReplayTest, NothingIsFetchedOrAskedForDaysThatTheRecordHas) {
  keepTheRecords();
  const std::size_t before = fetches();
  for (int week = 0; week < 7; ++week)
    press(tallymoor(), "Back a week");
  EXPECT_EQ(Date(2026, 1, 13), TallymoorWindow::viewDate());
  EXPECT_EQ(before, fetches());
  EXPECT_TRUE(boxes().empty());
}

TEST_F(ViewDateReplayTest, BeforeTheFirstDayEverythingIsEmptyAndNothingIsAsked) {
  keepTheRecords();
  const std::size_t before = fetches();
  pickViewDate(Date(2026, 1, 5));
  for (int day = 0; day < 5; ++day)
    press(tallymoor(), "Back a day");
  EXPECT_EQ(before, fetches());
  pickViewDate(Date(1990, 1, 1)); // Requests the index on the watchlist, without success.
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ("$0.00", figure(root(), "Total Capital"));
  EXPECT_EQ("$0.00", figure(trading(), "Total Capital"));
  EXPECT_EQ("0.00% (n/a)", figure(trading(), "Gain today (index)"));
  for (PortfolioTableTreeItem* node :
       std::initializer_list<PortfolioTableTreeItem*>{trading().sharesHeldItem(), trading().sharesSoldItem(),
                                                      trading().dividendsItem(), trading().cashReserveItem()})
    EXPECT_EQ(0, node->table()->getNumRows()) << node->label().toUTF8();
}

/// A forgotten purchase: the form proposes the viewed day and its price, and all later days change.
TEST_F(ViewDateReplayTest, ATransactionOfThePastCountsFromItsDayOn) {
  keepTheRecords();
  market().addListing(u"BBB.AX", u"Baobab", u"Australia");
  market().setCurrentPrice(u"BBB.AX", 5.0); // The current price.
  pickViewDate(Date(2026, 2, 5));
  whenModal("Choose Portfolio", [this](FXWindow& dialog) {
    press(dialog, "Trading");
    press(dialog, "OK");
  });
  whenModal("Buy Shares", [this](FXWindow& dialog) {
    EXPECT_EQ("05/02/2026", std::string(field(dialog, "Date bought").getText().text()));
    type(field(dialog, "Stock code"), "BBB.AX");
    press(dialog, "Search for stock code");
  });
  whenModal("Stock Search", [this](FXWindow& search) { press(search, "OK"); });
  whenModal("Buy Shares", [this](FXWindow& dialog) {
    EXPECT_EQ(4.6, String(field(dialog, "Share price").getText().text()).toDouble()); // That day's price.
    type(field(dialog, "Number bought"), "10");
    type(field(dialog, "Brokerage paid"), "4");
    press(dialog, "OK");
  });
  answer("Would you like to make this the default brokerage rate?", "No");
  press(tallymoor(), "Buy Shares");
  letEventsPass();
  const std::vector<std::string> titles = {"", "Number", "Purchase Value"};
  EXPECT_THAT(
      shown(*trading().sharesHeldItem(), titles),
      ElementsAre(ElementsAre("AAA.AX", "200.00", "$1,000.00"), ElementsAre("BBB.AX", "130.00", "$526.00")));
  EXPECT_EQ("$8,470.00", figure(trading(), "Capital in cash")); // 8,520.00 less 46.00 and 4.00.
  pickViewDate(Date(2026, 2, 4));
  EXPECT_THAT(
      shown(*trading().sharesHeldItem(), titles),
      ElementsAre(ElementsAre("AAA.AX", "200.00", "$1,000.00"), ElementsAre("BBB.AX", "120.00", "$480.00")));
  pickViewDate(Date(2026, 3, 3));
  EXPECT_EQ("$9,475.50", figure(trading(), "Capital in cash")); // 9,525.50 less 50.00.
  EXPECT_THAT(
      shown(*trading().sharesHeldItem(), titles),
      ElementsAre(ElementsAre("AAA.AX", "50.00", "$360.00"), ElementsAre("BBB.AX", "130.00", "$526.00")));
}

TEST_F(ViewDateReplayTest, ANegativeReserveOfAPastDayGivesNoWarning) {
  profile().setToday(Date(2026, 3, 3));
  m_portfolio->creditCash(Date(2026, 1, 5), 100, CASH_EVENT_DEPOSIT, u"DEPOSIT start");
  m_portfolio->debitCash(Date(2026, 1, 6), 150, CASH_EVENT_DEBIT, u"Account fee");
  m_portfolio->creditCash(Date(2026, 1, 8), 200, CASH_EVENT_DEPOSIT, u"DEPOSIT more");
  tallymoor().refreshViews(true);
  pickViewDate(Date(2026, 1, 6));
  letEventsPass();
  EXPECT_EQ("-$50.00", figure(trading(), "Capital in cash"));
  EXPECT_THAT(tallymoor().warnings()->shownTexts(), IsEmpty());
}

TEST_F(ViewDateReplayTest, APriceBeyondItsLimitOnAPastDayTintsTheRowAndIsNoWarning) {
  keepTheRecords();
  m_portfolio->setMinMax(*m_portfolio->findHeldShare(u"BBB.AX"), 4.3, 9.0);
  tallymoor().refreshViews(true);
  const FXColor plain = heldTint(1);
  pickViewDate(Date(2026, 1, 13));
  letEventsPass();
  EXPECT_NE(plain, heldTint(1));
  EXPECT_THAT(tallymoor().warnings()->shownTexts(), IsEmpty());
}

/// Part of it has been sold since, so the row shows a copy of the record.
TEST_F(ViewDateReplayTest, LimitsTypedInThePastAreKept) {
  keepTheRecords();
  pickViewDate(Date(2026, 1, 13));
  startTyping(1, u"Price Min/Max", "3 - 5");
  trading().sharesHeldItem()->table()->acceptInput(TRUE);
  letEventsPass();
  EXPECT_EQ("$3.00 - $5.00", shown(*trading().sharesHeldItem(), {"Price Min/Max"}).at(1).at(0));
  pickViewDate(Date(2026, 3, 3));
  EXPECT_EQ("$3.00 - $5.00", shown(*trading().sharesHeldItem(), {"Price Min/Max"}).at(1).at(0));
}

/// Text typed before a change of the day belongs to the old day.
TEST_F(ViewDateReplayTest, APriceBeingTypedGoesToTheDayThatItWasTypedOn) {
  keepTheRecords();
  startTyping(1, u"Price Now", "5.25");
  answer("Do you want to manually update the price of BBB.AX on 03/03/2026 to $5.25?", "Yes");
  press(tallymoor(), "Back a day");
  letEventsPass();
  EXPECT_EQ("4.60", shown(*trading().sharesHeldItem(), {"Price Now"}).at(1).at(0));
  press(*tallymoor().viewDateRow()->forwardDay());
  EXPECT_EQ("5.25", shown(*trading().sharesHeldItem(), {"Price Now"}).at(1).at(0));
}

} // namespace
} // namespace Tallymoor
