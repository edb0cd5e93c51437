// Tables of events reuse their rows where possible. They must show the same as a newly filled table.
#include "FreshTableTest.h"
#include "views/CashReserveTable.h"
#include "views/DividendsTable.h"
#include "views/SharesHeldTable.h"
#include "views/SharesSoldTable.h"
#include <random>

using namespace Tallymoor;
using testing::ElementsAre;

namespace {

int computedAlone = 0;
int computedWithMore = 0;

CellResult descriptionAlone(Row& row) {
  ++computedAlone;
  return CellResult(row.payload<EventRow>().as<XMLCashEvent>().description());
}

CellResult descriptionWithMore(Row& row) {
  ++computedWithMore;
  return CellResult(row.payload<EventRow>().as<XMLCashEvent>().description());
}

/// Cash entries with columns that count the computed cells.
class CountingTable : public EventTable {
public:
  CountingTable(SharePortfolioUser& portfolio, PortfolioCommands& commands, FXComposite* parent)
      : EventTable({u"Counting Table", u"", u"", u""}, portfolio, commands, parent, nullptr) {
    updateTable();
  }

protected:
  std::vector<ColumnOf> columnsOfEvents() const override {
    return {{u"Alone", &descriptionAlone, COMPARE_TEXT, FXTableItem::LEFT, true, EVENT_ALONE},
            {u"With More", &descriptionWithMore}};
  }
  void addAllEvents() override { addEvents(portfolio().portfolio().cashEvents()); }
  PopupLabels popupLabels(const EventRow&) const override { return {}; }
  void editEvent(const EventRow&) override {}
  void deleteEvent(const EventRow&) override {}
};

class EventTableTest : public FreshTableTest {
protected:
  void SetUp() override {
    ViewsTest::SetUp();
    addTrading();
    showTree();
  }
  void deposit(const Date& day, double value, const String& description) {
    change([&] { user().creditCash(day, value, CASH_EVENT_DEPOSIT, description); });
  }
  void expectAllAsMadeAnew(const std::string& when) {
    expectAsMadeAnew(dynamic_cast<CashReserveTable&>(*cash().table()), when + ", cash");
    expectAsMadeAnew(dynamic_cast<SharesHeldTable&>(*held(u"Trading").table()), when + ", held");
    expectAsMadeAnew(dynamic_cast<SharesSoldTable&>(*sold().table()), when + ", sold");
    expectAsMadeAnew(dynamic_cast<DividendsTable&>(*dividends().table()), when + ", dividends");
  }
};

TEST_F(EventTableTest, RowsThatStayKeepTheirCells) {
  leftClick(cash());
  Table& table = *cash().table();
  const FXTableItem* first = table.getItem(0, 0);
  const FXTableItem* last = table.getItem(2, 0);
  deposit(Date(2026, 2, 10), 300.0, u"DEPOSIT salary");
  EXPECT_EQ(first, table.getItem(0, 0));
  EXPECT_EQ(last, table.getItem(3, 0));
  EXPECT_THAT(rowTexts(table, 2), ElementsAre("DEPOSIT salary", "$300.00", "", "$4,270.00"));
  EXPECT_THAT(rowTexts(table, 3), ElementsAre("BUY 50.00 of AAA.AX @ 6.0000", "", "$320.00", "$3,950.00"));
  change([this] { user().deleteCashEvent(cashEntry(3)); });
  EXPECT_EQ(first, table.getItem(0, 0));
  EXPECT_EQ(last, table.getItem(2, 0));
  EXPECT_EQ(3, table.getNumRows());
}

TEST_F(EventTableTest, ColumnsAreAsWideAsTheWidestTextThatIsLeft) {
  leftClick(cash());
  Table& table = *cash().table();
  const FXint before = table.getColumnWidth(0);
  deposit(Date(2026, 2, 10), 300.0, u"DEPOSIT of what my aunt has left me by her will of 1987");
  EXPECT_LT(before, table.getColumnWidth(0));
  expectAllAsMadeAnew("with the wide text");
  change([this] {
    user().editCashEvent(cashEntry(3), Date(2026, 2, 10), Date(2026, 2, 10), 300.0, u"DEPOSIT");
  });
  EXPECT_EQ(before, table.getColumnWidth(0));
}

TEST_F(EventTableTest, EventsOfOneDayStandInTheOrderOfTheRecords) {
  buy(user(), u"BBB.AX", 100, 2.0);
  leftClick(sold());
  change([this] { user().sellShares(u"BBB.AX", {Date(2026, 2, 27), 10, 2.0, 0.0, u"first"}, true); });
  change([this] { user().sellShares(u"AAA.AX", {Date(2026, 2, 27), 10, 6.0, 0.0, u"second"}, true); });
  change([this] { user().sellShares(u"BBB.AX", {Date(2026, 2, 27), 20, 2.0, 0.0, u"third"}, true); });
  expectAllAsMadeAnew("after sales");
  viewDate(Date(2026, 2, 26));
  EXPECT_EQ(0, sold().table()->getNumRows());
  expectAllAsMadeAnew("on an earlier day");
  Date::clearFixedDate();
  tree().updateItems();
  settle();
  EXPECT_EQ(3, sold().table()->getNumRows());
  expectAllAsMadeAnew("today again");
}

TEST_F(EventTableTest, SortedTablesFollowToo) {
  leftClick(sold());
  Table& table = *sold().table();
  const auto sell = [this](double number) {
    change([&] { user().sellShares(u"AAA.AX", {Date(2026, 2, 27), number, 6.0, 0.0, String()}, true); });
  };
  const auto numbers = [&table] {
    std::vector<std::string> texts;
    for (FXint row = 0; row < table.getNumRows(); ++row)
      texts.push_back(cellText(table, row, u"Num Sold"));
    return texts;
  };
  const auto clickNumbers = [&table] {
    FXHeader& header = *table.getColumnHeader();
    header.getTarget()->handle(&header, FXSEL(SEL_COMMAND, header.getSelector()),
                               reinterpret_cast<void*>(FXival(columnOf(table, u"Num Sold"))));
  };
  sell(20);
  sell(10);
  clickNumbers();
  sell(15);
  EXPECT_THAT(numbers(), ElementsAre("10.00", "15.00", "20.00"));
  clickNumbers();
  sell(12);
  EXPECT_THAT(numbers(), ElementsAre("20.00", "15.00", "12.00", "10.00"));
}

/// Random changes of cash, sales and dividends, at several view dates.
TEST_F(EventTableTest, UpdatedTablesEqualNewlyFilledTables) {
  buy(user(), u"BBB.AX", 1000, 2.0);
  std::mt19937 random(1729); // The same changes in each run.
  const auto upTo = [&random](std::size_t most) { return random() % most; };
  const auto anyDay = [&] { return Date(2026, 2, 20).plusDays(static_cast<int>(upTo(12))); };
  const std::array<InvestmentTreeItem*, 3> pages{&cash(), &sold(), &dividends()};
  for (int step = 0; step < 60; ++step) {
    leftClick(*pages.at(upTo(3)));
    const Date day = anyDay();
    const double amount = 1.0 + static_cast<double>(upTo(2000)) / 8;
    const String text = u"step " + String::fromLong(step);
    change([&] {
      switch (upTo(8)) {
      case 0:
      case 1:
        user().creditCash(day, amount, CASH_EVENT_DEPOSIT, text);
        break;
      case 2:
        user().editCashEvent(cashEntry(numCashEntries() - 1), day,
                             dateValue(cashEntry(numCashEntries() - 1), u"Date"), amount, text);
        break;
      case 3:
        user().deleteCashEvent(cashEntry(upTo(numCashEntries())));
        break;
      case 4:
        user().sellShares(u"BBB.AX", {day, 5, amount, 1.0, text}, true);
        break;
      case 5: {
        if (auto* stock = user().findSoldShare(u"BBB.AX"))
          user().undoSale(stock->sales()[upTo(stock->sales().size())]);
        break;
      }
      case 6:
        user().receiveDividend({u"BBB.AX", day, 1000, 0.01 * amount, 100, 0, 0, String(), 0});
        break;
      default:
        Date::setFixedDate(day);
        break;
      }
    });
    expectAllAsMadeAnew("step " + std::to_string(step));
    Date::clearFixedDate();
  }
}

TEST_F(EventTableTest, OfAnUnchangedEventOnlyDependentCellsAreRecomputed) {
  deposit(Date(2026, 2, 2), 500.0, u"DEPOSIT first");
  deposit(Date(2026, 2, 3), 600.0, u"DEPOSIT second");
  auto* table = new CountingTable(user(), node(u"Trading"), mainWindow().contentFrame());
  table->create();
  const FXint rows = table->getNumRows();
  computedAlone = computedWithMore = 0;
  table->updateTable();
  EXPECT_EQ(0, computedAlone);
  EXPECT_EQ(rows, computedWithMore);
  table->rowAt(rows - 1)->payload<EventRow>().event->subElement(u"Description").setValue(u"DEPOSIT changed");
  table->updateTable();
  EXPECT_EQ(1, computedAlone);
  EXPECT_EQ("DEPOSIT changed", rowTexts(*table, rows - 1)[0]);
  delete table;
}

TEST_F(EventTableTest, AShareStillHeldKeepsItsRow) {
  auto& table = dynamic_cast<SharesHeldTable&>(*held(u"Trading").table());
  ASSERT_LT(0, table.getNumRows());
  const Row* first = table.rowAt(0);
  deposit(Date(2026, 2, 2), 500.0, u"DEPOSIT first");
  held(u"Trading").table();
  EXPECT_EQ(first, table.rowAt(0));
}

} // namespace
