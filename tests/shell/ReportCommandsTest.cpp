#include "RecordingPlatform.h"
#include "ShellTest.h"
#include "TestPaths.h"
#include "views/DividendCells.h"
#include "views/DividendsTreeItem.h"
#include "views/HeldShareCells.h"
#include "views/PortfolioTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/SharesSoldTreeItem.h"
#include "views/SoldShareCells.h"
#include "views/TotalCapTreeItem.h"
#include "views/TotalsBar.h"
#include <filesystem>
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct Report {
  FXuint command;
  std::string entry;   ///< Menu entry.
  std::string handler; ///< Name in failure messages.
  std::string title;
  std::string file; ///< On 3 March 2026 in Australia.
};

const Report REPORTS[] = {
    {TallymoorWindow::ID_REPORT_LAST_MONTH, "Report for last month...", "onReportLastMonth",
     "Report for last month", "Report 2026-02-01 to 2026-02-28"},
    {TallymoorWindow::ID_REPORT_LAST_FQ, "Report for last financial quarter...", "onReportLastFQ",
     "Report for last financial quarter", "Report 2025-10-01 to 2025-12-31"},
    {TallymoorWindow::ID_REPORT_LAST_CQ, "Report for last calendar quarter...", "onReportLastCQ",
     "Report for last calendar quarter", "Report 2025-10-01 to 2025-12-31"},
    {TallymoorWindow::ID_REPORT_LAST_FY, "Report for last financial year...", "onReportLastFY",
     "Report for last financial year", "Report 2024-07-01 to 2025-06-30"},
    {TallymoorWindow::ID_REPORT_LAST_CY, "Report for last calendar year...", "onReportLastCY",
     "Report for last calendar year", "Report 2025-01-01 to 2025-12-31"},
    {TallymoorWindow::ID_REPORT_LAST_CY, "Custom Report...", "onReportLastCY",
     "Report for last calendar year", "Report 2025-01-01 to 2025-12-31"}};

/// The commands with a portfolio "Trading" that bought and sold AAA.AX in January and February 2026.
class ReportCommandsTest : public ShellTest {
protected:
  ReportCommandsTest() {
    std::filesystem::copy(TALLYMOOR_SAMPLES "/../assets/defaults/Report",
                          profile().defaultsFolder() + "/Report", std::filesystem::copy_options::recursive);
    market().setHistory(u"AAA.AX", Date(2025, 12, 1), Date(2026, 3, 3),
                        [](const Date& day) { return 10.0 + day.month() + day.day() / 10.0; });
    market().setCurrentPrice(u"AAA.AX", 13.3);
  }
  void addTrading() {
    whenModal("New Portfolio", [this](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), "Trading");
      press(dialog, "OK");
    });
    command(TallymoorWindow::ID_NEW_PORTFOLIO);
    SharePortfolioUser& trading = *tallymoor().store().portfolios().at(u"Trading");
    trading.creditCash(Date(2026, 1, 2), 50000.0, 4, u"DEPOSIT start");
    trading.buyShares(u"AAA.AX", {Date(2026, 1, 5), 1000, 11.5, 29.95, String()});
    trading.buyShares(u"AAA.AX", {Date(2026, 1, 19), 500, 12.25, 29.95, String()});
    trading.receiveDividend({u"AAA.AX", Date(2026, 2, 2), 1500, 0.123456, 85, 0, 0, String(), 0});
    trading.receiveDividend({u"AAA.AX", Date(2026, 2, 3), 1500, 0.1, 0, 12, 12.5, u"France", 22.5});
    trading.sellShares(u"AAA.AX", {Date(2026, 2, 10), 1200, 13, 33, u"half of it"}, true);
    trading.sellShares(u"AAA.AX", {Date(2026, 3, 2), 100, 13.2, 33, String()}, true);
    tallymoor().refreshViews(true);
  }
  RecordingPlatform& platform(const RecordingPlatform::Behaviour& behaviour = {}) {
    return RecordingPlatform::install(profile(), behaviour);
  }
  String pageFile(const std::string& name) {
    return profile().reportFolder() + String((name + ".html").c_str());
  }
  SharePortfolioTreeItem& trading() { return *tallymoor().totalCapital()->portfolioNode(u"Trading"); }
  void pressEntry(const std::string& text) {
    FXMenuCommand* entry = menuEntry(text);
    ASSERT_TRUE(entry) << text;
    press(*entry);
  }
  void reportCustom(const std::string& from, const std::string& to) {
    whenModal("Custom Report", [=, this](FXWindow& dialog) {
      type(field(dialog, "From"), from);
      type(field(dialog, "To"), to);
      press(dialog, "OK");
    });
    press(tallymoor(), "Report");
  }
  /// The cells of a row as HTML.
  static std::string cells(Table& table, FXint row, const std::vector<Column::Function>& columns) {
    std::string text;
    for (const Column::Function column : columns)
      text += "<td>" + table.cell(column, *table.rows()[std::size_t(row)]).shown().toUTF8() + "</td>";
    return text;
  }
  static std::string total(const TotalsBar& bar, Column::Function column) {
    return "<td>" + std::string(bar.total(column)->getText().text()) + "</td>";
  }
};

TEST_F(ReportCommandsTest, EachEntryOfTheMenuReportsItsPeriodAndOpensThePage) {
  addTrading();
  for (const Report& each : REPORTS) {
    const RecordingPlatform& opener = platform();
    ASSERT_NO_FATAL_FAILURE(pressEntry(each.entry));
    EXPECT_EQ(each.command, menuEntry(each.entry)->getSelector());
    EXPECT_THAT(opener.opened(), ElementsAre(pageFile(each.file)));
    EXPECT_THAT(TestProfile::readFile(pageFile(each.file)), HasSubstr("<h1>" + each.title + "</h1>"));
    EXPECT_TRUE(TestProfile::fileExists(profile().reportFolder() + String((each.file + ".xml").c_str())));
  }
}

TEST_F(ReportCommandsTest, TheMenusCustomReportIsThatOfTheCalendarYear) {
  EXPECT_EQ(FXSelector(TallymoorWindow::ID_REPORT_LAST_CY), menuEntry("Custom Report...")->getSelector());
  EXPECT_EQ(FXSelector(TallymoorWindow::ID_REPORT_CUSTOM),
            dynamic_cast<FXButton&>(button(tallymoor(), "Report")).getSelector());
}

TEST_F(ReportCommandsTest, TheToolBarsButtonAsksForTheDays) {
  addTrading();
  const RecordingPlatform& opener = platform();
  whenModal("Custom Report", [this](FXWindow& dialog) {
    EXPECT_EQ("01/07/2025", std::string(field(dialog, "From").getText().text()));
    EXPECT_EQ("03/03/2026", std::string(field(dialog, "To").getText().text()));
    type(field(dialog, "From"), "06/01/2026");
    type(field(dialog, "To"), "02/03/2026");
    press(dialog, "OK");
  });
  press(tallymoor(), "Report");
  EXPECT_THAT(opener.opened(), ElementsAre(pageFile("Report 2026-01-06 to 2026-03-02")));
  const std::string page = TestProfile::readFile(opener.opened().front());
  EXPECT_THAT(page, HasSubstr("<h1>Custom report</h1>"));
  EXPECT_THAT(page, HasSubstr("half of it"));
  EXPECT_THAT(page, HasSubstr("<svg"));
}

TEST_F(ReportCommandsTest, CancellingMakesNoReport) {
  addTrading();
  const RecordingPlatform& opener = platform();
  whenModal("Custom Report", [this](FXWindow& dialog) { press(dialog, "Cancel"); });
  press(tallymoor(), "Report");
  EXPECT_THAT(opener.opened(), IsEmpty());
}

TEST_F(ReportCommandsTest, TheFiguresAreThoseOfTheTables) {
  addTrading();
  const RecordingPlatform& opener = platform();
  reportCustom("01/02/2026", "28/02/2026");
  ASSERT_EQ(1u, opener.opened().size());
  const std::string page = TestProfile::readFile(opener.opened().front());
  tallymoor().setViewDate(Date(2026, 2, 28));
  {
    using namespace HeldShareCells;
    SharesHeldTreeItem& node = *trading().sharesHeldItem();
    ASSERT_EQ(1, node.table()->getNumRows());
    // 100 of these have been sold since.
    EXPECT_EQ("<td>312.00</td>", cells(*node.table(), 0, {&number}));
    EXPECT_THAT(page,
                HasSubstr("AAA.AX</td>" + cells(*node.table(), 0,
                                                {&number, &buyPrice, &priceNow, &purchaseValue, &currentValue,
                                                 &grossGain, &gainPercent, &portfolioPercent, &daysHeld})));
    EXPECT_THAT(page,
                HasSubstr(total(*node.totalsBar(), &purchaseValue) + total(*node.totalsBar(), &currentValue) +
                          total(*node.totalsBar(), &grossGain) + "<td></td>" +
                          total(*node.totalsBar(), &portfolioPercent)));
  }
  {
    using namespace SoldShareCells;
    SharesSoldTreeItem& node = *trading().sharesSoldItem();
    ASSERT_EQ(2, node.table()->getNumRows());
    for (const FXint row : {0, 1})
      EXPECT_THAT(
          page, HasSubstr(cells(*node.table(), row,
                                {&buyDate, &sellDate, &daysHeld, &numSold, &buyPrice, &sellPrice, &grossCost,
                                 &grossSale, &grossProfit, &totalBrokerage, &netProfit, &netGain})));
    EXPECT_THAT(page,
                HasSubstr(total(*node.totalsBar(), &grossCost) + total(*node.totalsBar(), &grossSale) +
                          total(*node.totalsBar(), &grossProfit) + total(*node.totalsBar(), &totalBrokerage) +
                          total(*node.totalsBar(), &netProfit)));
  }
  {
    using namespace DividendCells;
    DividendsTreeItem& node = *trading().dividendsItem();
    ASSERT_EQ(2, node.table()->getNumRows());
    for (const FXint row : {0, 1})
      EXPECT_THAT(page, HasSubstr(cells(*node.table(), row,
                                        {&onNumHeld, &rate, &value, &percentFranked, &frankingCreditOf})));
    EXPECT_THAT(page, HasSubstr("12.00 shares at 12.5000</td><td class=\"t\">France</td><td>$22.50</td>"));
    EXPECT_THAT(page, HasSubstr(total(*node.totalsBar(), &value) + "<td></td>" +
                                total(*node.totalsBar(), &frankingCreditOf)));
  }
}

TEST_F(ReportCommandsTest, PeriodsEndBeforeTheViewDate) {
  addTrading();
  tallymoor().setViewDate(Date(2026, 2, 15));
  const RecordingPlatform& opener = platform();
  command(TallymoorWindow::ID_REPORT_LAST_MONTH);
  EXPECT_THAT(opener.opened(), ElementsAre(pageFile("Report 2026-01-01 to 2026-01-31")));
}

TEST_F(ReportCommandsTest, ThePlaceIsToldWhenThePageCannotBeOpened) {
  addTrading();
  RecordingPlatform::Behaviour behaviour;
  behaviour.opens = false;
  platform(behaviour);
  const String page = pageFile("Report 2026-02-01 to 2026-02-28");
  answer("Failed to open the report for you.\nThe report is at\n" + page.toUTF8(), "OK");
  command(TallymoorWindow::ID_REPORT_LAST_MONTH);
  EXPECT_TRUE(TestProfile::fileExists(page));
}

TEST_F(ReportCommandsTest, WithoutPortfoliosThereIsNothingToReportOn) {
  const RecordingPlatform& opener = platform();
  answer("There are no portfolios to report on.", "OK");
  command(TallymoorWindow::ID_REPORT_LAST_FY);
  EXPECT_THAT(opener.opened(), IsEmpty());
  EXPECT_FALSE(TestProfile::fileExists(pageFile("Report 2024-07-01 to 2025-06-30")));
}

TEST_F(ReportCommandsTest, FailuresNameTheCommand) {
  addTrading();
  RecordingPlatform::Behaviour behaviour;
  behaviour.writesDates = false;
  platform(behaviour);
  for (const Report& each : REPORTS) {
    answer("TallymoorWindow::" + each.handler + " failed. Exception : no form for dates", "OK");
    command(each.command);
  }
  answer("TallymoorWindow::onReportCustom failed. Exception : no form for dates", "OK");
  command(TallymoorWindow::ID_REPORT_CUSTOM);
}

TEST_F(ReportCommandsTest, ABrokenStylesheetIsTold) {
  addTrading();
  const RecordingPlatform& opener = platform();
  const std::string folder = profile().reportFolder().toUTF8();
  TestProfile::writeFile(profile().reportFolder() + u"Tallymoor Report.xsl", "");
  answer(
      "TallymoorWindow::onReportLastMonth failed. Exception : The stylesheet of the report can't be read:\n" +
          folder + "Tallymoor Report.xsl\nThe figures of the report are in\n" + folder +
          "Report 2026-02-01 to 2026-02-28.xml",
      "OK");
  command(TallymoorWindow::ID_REPORT_LAST_MONTH);
  EXPECT_THAT(opener.opened(), IsEmpty());
  EXPECT_TRUE(TestProfile::fileExists(profile().reportFolder() + u"Report 2026-02-01 to 2026-02-28.xml"));
}

} // namespace
} // namespace Tallymoor
