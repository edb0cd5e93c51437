#include "views/HeldShareCells.h"
#include "ViewsTest.h"

using namespace Tallymoor;
using testing::ElementsAre;

namespace {

class HeldShareCellsTest : public ViewsTest {
protected:
  void expectCells(const Table& table, FXint row, const std::vector<std::pair<String, std::string>>& cells) {
    for (const auto& [title, text] : cells)
      EXPECT_EQ(text, cellText(table, row, title)) << title.toUTF8();
  }
};

TEST_F(HeldShareCellsTest, FigureAShareOfTwoParcelsAcrossASplitByHand) {
  addTrading();
  showTree();
  const Table& table = *held(u"Trading").table();
  ASSERT_EQ(1, table.getNumRows());
  // 200 at 5.00 and 50 at 6.00, adjusted for the split; the cash is 5,000.00 - 1,030.00 - 320.00.
  expectCells(table, 0,
              {{u"Number", "250.00"},
               {u"Buy Price", "5.20"},
               {u"Price Now", "6.60"},
               {u"Purchase Value", "$1,300.00"},
               {u"Current Value", "$1,650.00"},
               {u"Day Move", "0.60"},
               {u"Day Gain", "$150.00"},
               {u"Day %", "10.00%"},
               {u"Week %", "20.00%"},
               {u"Month %", "32.00%"}, // From 10.00 before the split, which is 5.00 now.
               {u"Gain %", "26.92%"},
               {u"Annualised Gain %", "338.86%"},
               {u"Gross Gain $", "$350.00"},
               {u"Price Min/Max", ""},
               {u"% in Min/Max", ""},
               {u"Portfolio %", "31.13%"},
               {u"Days Held", "29"}});
}

TEST_F(HeldShareCellsTest, FigureEachPurchaseByItself) {
  addTrading();
  showTree();
  const Table& table = *purchases(u"Trading", u"AAA.AX")->table();
  ASSERT_THAT(rowKeys(table), ElementsAre("02/02/2026", "20/02/2026"));
  expectCells(table, 0,
              {{u"Number", "200.00"},
               {u"Buy price", "5.00"},
               {u"Price Now", "6.60"},
               {u"Purchase Value", "$1,000.00"},
               {u"Current Value", "$1,320.00"},
               {u"Day Gain", "$120.00"},
               {u"Gain %", "32.00%"},
               {u"Annualised Gain %", "402.76%"},
               {u"Gross Gain $", "$320.00"},
               {u"Buy Date", "02/02/2026"},
               {u"Days Held", "29"}});
  expectCells(table, 1,
              {{u"Number", "50.00"},
               {u"Buy price", "6.00"},
               {u"Purchase Value", "$300.00"},
               {u"Gain %", "10.00%"},
               {u"Gross Gain $", "$30.00"},
               {u"Days Held", "11"}});
}

TEST_F(HeldShareCellsTest, CountWhatWasSoldSinceTheDateShown) {
  SharePortfolioUser& user = addPortfolio(u"Partly", 5000.0);
  market().setHistory(u"BBB.AX", Date(2026, 1, 20), Date(2026, 3, 3), 3.0);
  user.buyShares(u"BBB.AX", {Date(2026, 2, 2), 100, 1.0, 0.0, String()});
  user.buyShares(u"BBB.AX", {Date(2026, 2, 9), 100, 2.0, 0.0, String()});
  user.sellShares(u"BBB.AX", {Date(2026, 2, 25), 150, 3.0, 0.0, String()}, true);
  showTree();
  Table& table = *held(u"Partly").table();
  const auto expectAt = [&](const Date& day, const char* number, const char* price, const char* cost,
                            const char* gain, const char* days) {
    Date::setFixedDate(day);
    table.updateTable();
    expectCells(table, 0,
                {{u"Number", number},
                 {u"Buy Price", price},
                 {u"Purchase Value", cost},
                 {u"Gross Gain $", gain},
                 {u"Days Held", days}});
  };
  expectAt(Date(2026, 2, 5), "100.00", "1.00", "$100.00", "$200.00", "3");
  expectAt(Date(2026, 2, 24), "200.00", "1.50", "$300.00", "$300.00", "22");
  expectAt(Date(2026, 2, 25), "50.00", "2.00", "$100.00", "$50.00", "16");
}

TEST_F(HeldShareCellsTest, CompareWithTheFirstPurchaseWhereTheShareWasNotHeldYet) {
  SharePortfolioUser& user = addPortfolio(u"New", 1000.0);
  market().setHistory(u"BBB.AX", Date(2026, 1, 20), Date(2026, 3, 3), 3.0);
  user.buyShares(u"BBB.AX", {Date(2026, 3, 3), 10, 2.0, 0.0, String()});
  user.buyShares(u"BBB.AX", {Date(2026, 2, 26), 10, 2.5, 0.0, String()});
  showTree();
  const Table& table = *held(u"New").table();
  // A month ago nothing was held, so 3.00 is compared with 2.50, the first price paid. Yesterday it was held.
  EXPECT_EQ("20.00%", cellText(table, 0, u"Month %"));
  EXPECT_EQ("0.00%", cellText(table, 0, u"Day %"));
  EXPECT_EQ("0.00", cellText(table, 0, u"Day Move"));
  // Ten were bought at 2.00 after that day: 60.00 now, 30.00 + 20.00 then.
  EXPECT_DOUBLE_EQ(20.0, held(u"New").table()->percentGainSince(Date(2026, 2, 26)));
}

TEST_F(HeldShareCellsTest, ShareBoughtForNothingTodayHasNoMoveAndNoGain) {
  SharePortfolioUser& user = addPortfolio(u"Gift", 1000.0);
  market().setHistory(u"BBB.AX", Date(2026, 1, 20), Date(2026, 3, 3), 3.0);
  user.addBuyEvent(u"BBB.AX", {Date(2026, 3, 3), 10, 0.0, 0.0, String()});
  showTree();
  const Table& table = *held(u"Gift").table();
  EXPECT_EQ("", cellText(table, 0, u"Day Move"));
  EXPECT_EQ("$0.00", cellText(table, 0, u"Day Gain"));
  EXPECT_EQ("0.00%", cellText(table, 0, u"Day %"));
  EXPECT_EQ("", cellText(table, 0, u"Gain %"));
  EXPECT_EQ("0.00%", cellText(table, 0, u"Annualised Gain %"));
  EXPECT_EQ("0", cellText(table, 0, u"Days Held"));
  EXPECT_DOUBLE_EQ(0.0, held(u"Gift").table()->percentGainSince(Date(2026, 3, 2)));
}

TEST_F(HeldShareCellsTest, PricesOfAPastDayAreThoseOfItsRecord) {
  addTrading();
  showTree();
  Table& table = *held(u"Trading").table();
  TallymoorInternet::Instance().clear();
  TallymoorInternet::Instance().goOffline();
  Date::setFixedDate(Date(2026, 2, 27));
  table.updateTable();
  EXPECT_EQ("250.00", cellText(table, 0, u"Number"));
  EXPECT_EQ("5.50", cellText(table, 0, u"Price Now"));
  EXPECT_EQ("$1,375.00", cellText(table, 0, u"Current Value"));
  EXPECT_EQ("0.00%", cellText(table, 0, u"Day %"));
  EXPECT_EQ("5.20", cellText(table, 0, u"Buy Price"));
}

TEST_F(HeldShareCellsTest, AroundASplitTheRowAgreesWithTheTotals) {
  SharePortfolioUser& user = addPortfolio(u"Trading", 5000.0);
  market().setHistory(u"AAA.AX", Date(2026, 1, 20), Date(2026, 3, 2), 10.0);
  market().setDay(u"AAA.AX", Date(2026, 3, 3), 5.5);
  user.buyShares(u"AAA.AX", {Date(2026, 2, 2), 100, 10.0, 0.0, String()});
  user.recordAdjustment(u"AAA.AX", Date(2026, 3, 3), 2, false);
  showTree();
  expectCells(*held(u"Trading").table(), 0,
              {{u"Number", "200.00"},
               {u"Day Move", "0.50"},
               {u"Day Gain", "$100.00"},
               {u"Day %", "10.00%"},
               {u"Week %", "10.00%"},
               {u"Month %", "10.00%"}});
  EXPECT_DOUBLE_EQ(10.0, held(u"Trading").table()->percentGainSince(Date(2026, 3, 2)));
}

TEST_F(HeldShareCellsTest, AValueFromASubstitutePriceHasAStar) {
  SharePortfolioUser& user = addPortfolio(u"Trading", 5000.0);
  market().setHistory(u"AAA.AX", Date(2026, 1, 20), Date(2026, 2, 20), 10.0);
  TallymoorInternet::Instance().historicalPrice(u"AAA.AX", Date(2026, 2, 20), true);
  TallymoorInternet::Instance().goOffline();
  user.buyShares(u"AAA.AX", {Date(2026, 2, 20), 100, 12.0, 0.0, String()});
  showTree();
  const Table& table = *held(u"Trading").table();
  EXPECT_EQ("$1,000.00 *", cellText(table, 0, u"Current Value"));
  EXPECT_EQ("10.00", cellText(table, 0, u"Price Now"));
}

} // namespace
