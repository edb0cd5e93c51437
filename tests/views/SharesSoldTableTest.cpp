#include "ViewsTest.h"
#include "books/UnreadableDates.h"
#include "market/StockNames.h"
#include "session/BookQuestions.h"
#include "views/SoldShareCells.h"
#include <algorithm>

using namespace Tallymoor;
using namespace Tallymoor::SoldShareCells;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SharesSoldTableTest : public ViewsTest {
protected:
  Table& table() { return *sold().table(); }
  /// "Trading": 5,000.00 on 1 February; 100 ABC.AX at 10.00 on the 2nd, all sold at 12.50 on the 20th; 50
  /// BBB.AX at 4.00 on the 2nd, 20 of them sold at 3.50 on 2 March.
  SharePortfolioUser& addSales() {
    market().setHistory(u"ABC.AX", Date(2026, 1, 20), Date(2026, 3, 3), 12.0);
    market().setHistory(u"BBB.AX", Date(2026, 1, 20), Date(2026, 3, 3), 4.0);
    SharePortfolioUser& user = addPortfolio(u"Trading", 5000.0);
    user.buyShares(u"ABC.AX", {Date(2026, 2, 2), 100, 10.0, 30.0, String()});
    user.sellShares(u"ABC.AX", {Date(2026, 2, 20), 100, 12.5, 20.0, u"half of it"}, true);
    user.buyShares(u"BBB.AX", {Date(2026, 2, 2), 50, 4.0, 10.0, String()});
    user.sellShares(u"BBB.AX", {Date(2026, 3, 2), 20, 3.5, 15.0, String()}, true);
    return user;
  }
  XMLSellEvent& sale(std::size_t stock = 0) {
    return portfolios()[u"Trading"]->portfolio().soldShares()[stock].sales()[0];
  }
  const std::string editEntry = "Edit sale of ABC.AX from 20/02/2026...";
  const std::string deleteEntry = "Delete sale of ABC.AX from 20/02/2026...";
  const std::string editTitle = "Edit share sold on 20/02/2026";
  const std::string deleteTitle = "Delete the sale of ABC.AX on 20/02/2026";
  /// Chooses "Delete" for the row and presses these buttons of its questions in turn.
  void deleteRow(FXint row, const std::string& entry, const std::string& caption,
                 const std::vector<std::string>& buttons) {
    chooseFromRow(table(), row, entry, [this, caption, buttons] {
      whenModal(caption, [this, buttons](FXWindow& dialog) {
        m_told = labels(dialog);
        for (const std::string& name : buttons)
          press(dialog, name);
      });
    });
  }
  /// True if the question contains this text. Ignores line breaks.
  bool told(const std::string& text) const {
    for (std::string label : m_told) {
      std::replace(label.begin(), label.end(), '\n', ' ');
      if (label.find(text) != std::string::npos)
        return true;
    }
    return false;
  }
  std::vector<std::string> m_told;
};

TEST_F(SharesSoldTableTest, DeclaresItsColumnsInOrder) {
  addSales();
  showTree();
  EXPECT_THAT(titles(table()), ElementsAre("Stock Code", "Name", "Num Sold", "Buy Price", "Sell Price",
                                           "Gross Cost", "Gross Sale", "Gross Profit", "Total Brokerage",
                                           "Net Profit", "Gross Gain", "Net Gain", "Annualised Net Gain",
                                           "Buy Date", "Sell Date", "Days Held", "Comment"));
  std::vector<int> compareTypes;
  for (const auto& column : table().columns()) {
    compareTypes.push_back(column->compareType());
    EXPECT_TRUE(column->defaultVisible());
    EXPECT_FALSE(column->editable());
    const bool words = column->title() == u"Name" || column->title() == u"Comment";
    EXPECT_EQ(words ? FXuint(FXTableItem::LEFT) : FXuint(FXTableItem::RIGHT), column->justify());
  }
  EXPECT_THAT(compareTypes, ElementsAre(0, 0, 5, 3, 3, 3, 3, 3, 3, 3, 4, 4, 4, 1, 1, 5, 0));
  EXPECT_EQ(String(u"Shares Sold Table"), table().name());
}

TEST_F(SharesSoldTableTest, ShowsWhatEachSaleCostBroughtInAndMade) {
  StockNames::remember(u"ABC.AX", u"ABC Mining");
  addSales();
  showTree();
  EXPECT_THAT(rowKeys(table()), ElementsAre("20/02/2026", "02/03/2026"));
  EXPECT_THAT(rowTexts(table(), 0),
              ElementsAre("ABC.AX", "ABC Mining", "100.00", "10.00", "12.50", "$1,000.00", "$1,250.00",
                          "$250.00", "$50.00", "$200.00", "25.00%", "20.00%", "405.56%", "02/02/2026",
                          "20/02/2026", "18", "half of it"));
  // The purchase's brokerage stays with the remaining 30 shares.
  EXPECT_THAT(rowTexts(table(), 1),
              ElementsAre("BBB.AX", "", "20.00", "4.00", "3.50", "$80.00", "$70.00", "-$10.00", "$15.00",
                          "-$25.00", "-12.50%", "-31.25%", "-407.37%", "02/02/2026", "02/03/2026", "28", ""));
}

TEST_F(SharesSoldTableTest, TotalsAreSumsUnderTheirColumns) {
  addSales();
  showTree();
  EXPECT_EQ("$240.00", total(sold(), &grossProfit));
  EXPECT_EQ("$65.00", total(sold(), &totalBrokerage));
  EXPECT_EQ("$175.00", total(sold(), &netProfit));
  EXPECT_EQ("$1,320.00", total(sold(), &grossSale));
  EXPECT_EQ("$1,080.00", total(sold(), &grossCost));
  EXPECT_EQ("none", total(sold(), &netGain));
  EXPECT_TRUE(shows(*sold().page(), "Totals:"));
}

TEST_F(SharesSoldTableTest, HiddenColumnHasNoTotal) {
  addSales();
  Settings::Instance().writeUnsigned(u"Upgrades", u"Visible Columns Shares Sold Table", 1);
  Settings::Instance().writeUnsigned(u"Visible Columns Shares Sold Table", u"Gross Cost", 0);
  showTree();
  EXPECT_EQ("none", total(sold(), &grossCost));
  EXPECT_EQ("$1,320.00", total(sold(), &grossSale));
}

TEST_F(SharesSoldTableTest, ADoubleClickEditsTheSale) {
  addSales();
  showTree();
  whenModal(editTitle, [this](FXWindow& dialog) { press(dialog, "Cancel"); });
  doubleClick(table(), 0, u"Net Profit");
}

TEST_F(SharesSoldTableTest, NoSalesGiveAnEmptyTableAndTotalsOfZero) {
  addTrading();
  showTree();
  EXPECT_EQ(String(u"No sales are recorded.\nRecord one by Portfolios, Sell Shares... (Ctrl+L)."),
            table().shownEmptyText());
  EXPECT_THAT(rowKeys(table()), IsEmpty());
  for (const Column::Function function : {&grossProfit, &totalBrokerage, &netProfit, &grossSale, &grossCost})
    EXPECT_EQ("$0.00", total(sold(), function));
}

TEST_F(SharesSoldTableTest, SaleOnTheDayOfPurchaseHasNoDaysAndNoAnnualisedGain) {
  SharePortfolioUser& user = addSales();
  user.buyShares(u"ABC.AX", {Date(2026, 2, 23), 10, 10.0, 0.0, String()});
  user.sellShares(u"ABC.AX", {Date(2026, 2, 23), 10, 11.0, 0.0, String()}, true);
  showTree();
  EXPECT_EQ("23/02/2026", cellText(table(), 1, u"Sell Date"));
  EXPECT_EQ("0", cellText(table(), 1, u"Days Held"));
  EXPECT_EQ("10.00%", cellText(table(), 1, u"Net Gain"));
  EXPECT_EQ("0.00%", cellText(table(), 1, u"Annualised Net Gain"));
}

TEST_F(SharesSoldTableTest, TwoSalesOfOneDayAreTwoRows) {
  SharePortfolioUser& user = addSales();
  user.sellShares(u"BBB.AX", {Date(2026, 2, 20), 5, 3.5, 0.0, String()}, true);
  user.sellShares(u"BBB.AX", {Date(2026, 2, 20), 7, 3.5, 0.0, String()}, true);
  showTree();
  EXPECT_THAT(rowKeys(table()), ElementsAre("20/02/2026", "20/02/2026", "20/02/2026", "02/03/2026"));
  EXPECT_EQ("5.00", cellText(table(), 1, u"Num Sold"));
  EXPECT_EQ("7.00", cellText(table(), 2, u"Num Sold"));
}

TEST_F(SharesSoldTableTest, SharesThatCostNothingHaveNoGainInPercent) {
  addSales();
  showTree();
  sale().subElement(u"BuyPrice").setValue(u"0.0000");
  table().updateTable();
  EXPECT_EQ("", cellText(table(), 0, u"Gross Gain"));
  EXPECT_EQ("", cellText(table(), 0, u"Net Gain"));
  EXPECT_EQ("", cellText(table(), 0, u"Annualised Net Gain"));
  EXPECT_EQ("$1,250.00", cellText(table(), 0, u"Gross Profit"));
}

TEST_F(SharesSoldTableTest, SalesAfterTheViewDateHaveNoRow) {
  addSales();
  showTree();
  viewDate(Date(2026, 2, 20));
  EXPECT_THAT(rowKeys(table()), ElementsAre("20/02/2026"));
  EXPECT_EQ("$250.00", total(sold(), &grossProfit));
  Date::clearFixedDate();
  tree().updateItems();
  EXPECT_EQ(2, table().getNumRows());
}

TEST_F(SharesSoldTableTest, SalesOfEarlierFinancialYearsCanBeHidden) {
  addSales();
  for (const char16_t* name : {u"BuyDate", u"SellDate"})
    sale().subElement(name).setValue(u"30/6/2025");
  hideLastFYTransactions = true;
  showTree();
  EXPECT_THAT(rowKeys(table()), ElementsAre("02/03/2026"));
}

// ---- Commands ----

TEST_F(SharesSoldTableTest, RowOffersItsCommands) {
  addSales();
  showTree();
  EXPECT_THAT(popupOfRow(table(), 0, editEntry), ElementsAre(editEntry, deleteEntry));
}

TEST_F(SharesSoldTableTest, DeletingGivesTheSharesBackUnlessToldOtherwise) {
  addSales();
  showTree();
  leftClick(sold());
  deleteRow(0, deleteEntry, deleteTitle, {"OK"});
  EXPECT_TRUE(told("The 100.00 shares, bought on 02/02/2026 at 10.00, are held again."));
  EXPECT_TRUE(told("Cash: 20/02/2026, SELL 100.00 of ABC.AX @ 12.5000, $1,230.00 is removed."));
  EXPECT_TRUE(told("Cash: what their purchase cost stays paid."));
  EXPECT_TRUE(boxes().empty());
  EXPECT_THAT(rowKeys(table()), ElementsAre("02/03/2026"));
  EXPECT_EQ("-$10.00", total(sold(), &grossProfit));
  EXPECT_EQ(4u, numCashEntries());
  EXPECT_EQ("$3,815.00", figure(node(u"Trading"), "Capital in cash")); // 5,000.00 - 1,030.00 - 210.00 + 55.00
  EXPECT_EQ(4, cash().table()->getNumRows());
  EXPECT_EQ(100.0, portfolios()[u"Trading"]->numHeld(u"ABC.AX"));
  EXPECT_EQ(&sold(), tree().shownItem());
  EXPECT_TRUE(root().takePortfoliosChanged());
}

TEST_F(SharesSoldTableTest, DeletingThePurchaseTooTakesBothCashEntriesAway) {
  addSales();
  showTree();
  leftClick(sold());
  deleteRow(0, deleteEntry, deleteTitle, {"Delete their purchase too", "OK"});
  EXPECT_TRUE(told("The 100.00 shares, bought on 02/02/2026 at 10.00, leave the records as if they had never "
                   "been bought."));
  EXPECT_TRUE(told("Cash: 02/02/2026, BUY 100.00 of ABC.AX @ 10.0000, $1,030.00 is removed."));
  EXPECT_TRUE(boxes().empty());
  EXPECT_THAT(rowKeys(table()), ElementsAre("02/03/2026"));
  EXPECT_EQ(3u, numCashEntries());
  EXPECT_EQ("$4,845.00", figure(node(u"Trading"), "Capital in cash")); // 5,000.00 - 210.00 + 55.00.
  EXPECT_EQ(3, cash().table()->getNumRows());
  EXPECT_EQ(0.0, portfolios()[u"Trading"]->numHeld(u"ABC.AX"));
}

TEST_F(SharesSoldTableTest, ChoosingTheFirstWayAgainGivesTheSharesBack) {
  addSales();
  showTree();
  deleteRow(0, deleteEntry, deleteTitle, {"Delete their purchase too", "Give the shares back", "OK"});
  EXPECT_EQ(100.0, portfolios()[u"Trading"]->numHeld(u"ABC.AX"));
}

TEST_F(SharesSoldTableTest, APartGoesBackToTheRestOfItsPurchase) {
  addSales();
  showTree();
  deleteRow(1, "Delete sale of BBB.AX from 02/03/2026...", "Delete the sale of BBB.AX on 02/03/2026", {"OK"});
  EXPECT_TRUE(told("The 20.00 shares, bought on 02/02/2026 at 4.00, go back to the rest of their purchase."));
  EXPECT_TRUE(told("Cash: the cost of these shares, $80.00, has no entry of its own. What was paid stays."));
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ(50.0, portfolios()[u"Trading"]->numHeld(u"BBB.AX"));
  EXPECT_EQ(1u, purchases(u"Trading", u"BBB.AX")->table()->getNumRows());
  EXPECT_EQ("$4,990.00", figure(node(u"Trading"), "Capital in cash")); // 5,000.00 + 200.00 - 210.00.
}

TEST_F(SharesSoldTableTest, NothingIsDeletedAtCancel) {
  addSales();
  showTree();
  deleteRow(0, deleteEntry, deleteTitle, {"Delete their purchase too", "Cancel"});
  EXPECT_EQ(2, table().getNumRows());
  EXPECT_EQ(5u, numCashEntries());
  EXPECT_FALSE(root().takePortfoliosChanged());
}

TEST_F(SharesSoldTableTest, CashEntriesThatAreNotThereAreToldBeforehand) {
  addSales();
  showTree();
  cashEntry(1).subElement(u"Value").setValue(u"1.00");
  cashEntry(2).subElement(u"Value").setValue(u"2.00");
  deleteRow(0, deleteEntry, deleteTitle, {"Delete their purchase too", "OK"});
  EXPECT_TRUE(
      told("Cash: an entry of $1,230.00 for this sale was not found. Look for it in \"Cash Reserve\"."));
  EXPECT_TRUE(
      told("Cash: the cost of these shares, $1,030.00, has no entry of its own. What was paid stays."));
  EXPECT_TRUE(boxes().empty());
  EXPECT_THAT(rowKeys(table()), ElementsAre("02/03/2026"));
  EXPECT_EQ(5u, numCashEntries());
}

TEST_F(SharesSoldTableTest, TheQuestionFitsTheScreenWhateverTheCashSays) {
  addSales();
  showTree();
  cashEntry(2)
      .subElement(u"Description")
      .setValue(String(u"ABC.AX & ") + String::fromUTF8(std::string(2000, 'w')));
  chooseFromRow(table(), 0, deleteEntry, [this] {
    whenModal(deleteTitle, [this](FXWindow& dialog) {
      EXPECT_LT(dialog.getWidth(), 1000);
      EXPECT_LT(dialog.getHeight(), 900);
      press(dialog, "Cancel");
    });
  });
}

TEST_F(SharesSoldTableTest, SalesOfSplitSharesAreShownAndDeletedAsTheyWereSold) {
  market().setHistory(u"ABC.AX", Date(2026, 1, 20), Date(2026, 3, 3), 6.0);
  SharePortfolioUser& user = addPortfolio(u"Trading", 5000.0);
  user.buyShares(u"ABC.AX", {Date(2026, 2, 2), 100, 9.0, 30.0, String()});
  user.recordAdjustment(u"ABC.AX", Date(2026, 2, 10), 3, false);
  user.sellShares(u"ABC.AX", {Date(2026, 2, 20), 100, 6.0, 20.0, String()}, true);
  showTree();
  EXPECT_THAT(rowTexts(table(), 0),
              ElementsAre("ABC.AX", "", "100.00", "3.00", "6.00", "$300.00", "$600.00", "$300.00", "$20.00",
                          "$280.00", "100.00%", "93.33%", "1892.59%", "02/02/2026", "20/02/2026", "18", ""));
  EXPECT_EQ("200.00", cellText(*purchases(u"Trading", u"ABC.AX")->table(), 0, u"Number"));
  chooseFromRow(table(), 0, editEntry, [this] {
    whenModal(editTitle, [this](FXWindow& dialog) {
      EXPECT_EQ("100.00", std::string(field(dialog, "Number sold").getText().text()));
      EXPECT_EQ("3.0000", std::string(field(dialog, "Buy price").getText().text()));
      type(field(dialog, "Sell price"), "7");
      type(field(dialog, "Buy Brokerage paid"), "1");
      answer("Please find and edit the corresponding cash deposit and withdrawal for this transaction.",
             "OK");
      press(dialog, "OK");
    });
  });
  EXPECT_EQ("$700.00", cellText(table(), 0, u"Gross Sale"));
  EXPECT_EQ(String(u"33.333333"), sale().subElement(u"NumHeld").value());
  EXPECT_EQ(String(u"9.0000"), sale().subElement(u"BuyPrice").value());
  EXPECT_EQ(String(u"680.00"), cashEntry(2).subElement(u"Value").value());
  deleteRow(0, deleteEntry, deleteTitle, {"OK"});
  EXPECT_TRUE(
      told("The 100.00 shares, bought on 02/02/2026 at 3.00, go back to the rest of their purchase."));
  EXPECT_EQ(300.0, user.numHeld(u"ABC.AX"));
}

TEST_F(SharesSoldTableTest, EditedSaleShowsEverywhere) {
  addSales();
  showTree();
  leftClick(sold());
  chooseFromRow(table(), 0, editEntry, [this] {
    whenModal(editTitle, [this](FXWindow& dialog) {
      EXPECT_EQ("ABC.AX", std::string(field(dialog, "Stock Code").getText().text()));
      type(field(dialog, "Sell price"), "13");
      type(field(dialog, "Sell Brokerage paid"), "25");
      type(field(dialog, "Date bought"), "03/02/2026");
      press(dialog, "OK");
    });
  });
  EXPECT_TRUE(boxes().empty());
  EXPECT_THAT(rowTexts(table(), 0),
              ElementsAre("ABC.AX", "", "100.00", "10.00", "13.00", "$1,000.00", "$1,300.00", "$300.00",
                          "$55.00", "$245.00", "30.00%", "24.50%", "526.03%", "03/02/2026", "20/02/2026",
                          "17", "half of it"));
  EXPECT_EQ("$290.00", total(sold(), &grossProfit));
  EXPECT_EQ("$5,090.00", figure(node(u"Trading"), "Capital in cash")); // 45.00 more.
  EXPECT_EQ("03/02/2026", rowKeys(*cash().table())[2]);
  EXPECT_TRUE(root().takePortfoliosChanged());
}

TEST_F(SharesSoldTableTest, EditThatTheCashCouldNotFollowSaysSo) {
  addSales();
  showTree();
  cashEntry(2).subElement(u"Value").setValue(u"1.00");
  chooseFromRow(table(), 0, editEntry, [this] {
    whenModal(editTitle, [this](FXWindow& dialog) {
      type(field(dialog, "Sell price"), "13");
      answer("Please find and edit the corresponding cash deposit and withdrawal for this transaction.",
             "OK");
      press(dialog, "OK");
    });
  });
  EXPECT_EQ("13.00", cellText(table(), 0, u"Sell Price"));
}

TEST_F(SharesSoldTableTest, CancelledEditChangesNothing) {
  addSales();
  showTree();
  chooseFromRow(table(), 0, editEntry, [this] {
    whenModal(editTitle, [this](FXWindow& dialog) {
      type(field(dialog, "Sell price"), "13");
      press(dialog, "Cancel");
    });
  });
  EXPECT_EQ("12.50", cellText(table(), 0, u"Sell Price"));
  EXPECT_FALSE(root().takePortfoliosChanged());
}

TEST_F(SharesSoldTableTest, FailuresOfCommandsAreReported) {
  addSales();
  showTree();
  chooseFromRow(table(), 0, deleteEntry, [this] {
    failInside(deleteTitle);
    answer("SharesSoldTable::onDelete failed. Exception : test", "OK");
  });
  chooseFromRow(table(), 0, editEntry, [this] {
    failInside(editTitle);
    answer("ShareHeldTable::onEdit failed. Exception : test", "OK");
  });
  EXPECT_EQ(2, table().getNumRows());
}

// ---- The node ----

TEST_F(SharesSoldTableTest, NodeOffersNoCommands) {
  addSales();
  showTree();
  clickNode(sold(), SEL_RIGHTBUTTONPRESS, SEL_RIGHTBUTTONRELEASE, RIGHTBUTTON);
  letEventsPass();
  EXPECT_TRUE(boxes().empty());
}

TEST_F(SharesSoldTableTest, ImplausibleDatesAreReportedAndTheTableStillBuilds) {
  addSales();
  sale().subElement(u"BuyDate").setValue(u"4/3/2026");
  sale(1).subElement(u"SellDate").setValue(u"5/3/2026");
  const std::string start = "Portfolio Trading has a ";
  answer(start + "buy date for sold share\nABC.AX\nthat is in the future, and must be corrected.", "OK");
  answer(start + "sell date for sold share\nABC.AX\nthat is before its buy date, and must be corrected.",
         "OK");
  answer(start + "sell date for sold share\nBBB.AX\nthat is in the future, and must be corrected.", "OK");
  showTree();
  EXPECT_EQ(3u, boxes().size());
  EXPECT_THAT(rowKeys(table()), ElementsAre("20/02/2026", "05/03/2026"));
  EXPECT_TRUE(sold().isSound());
}

TEST_F(SharesSoldTableTest, UnreadableDatesAreNotReportedAgain) {
  addSales();
  sale().subElement(u"BuyDate").setValue(u"some day");
  sale(1).subElement(u"SellDate").setValue(u"another");
  ASSERT_EQ(setAsideUnreadableDates(records()).size(), 2u);
  showTree();
  EXPECT_TRUE(boxes().empty());
  EXPECT_TRUE(sold().isSound());
}

TEST_F(SharesSoldTableTest, UnderAViewDateLaterDatesAreNotFutureDates) {
  addSales();
  Date::setFixedDate(Date(2026, 2, 10));
  showTree();
  EXPECT_TRUE(boxes().empty());
}

TEST_F(SharesSoldTableTest, AnUnreadableDateBreaksTheNode) {
  checkCashReserve(addSales());
  sale().subElement(u"SellDate").setValue(u"no date");
  const std::string unsound = "This portfolio has suffered an error. Please restart Tallymoor.";
  answer(unsound, "OK");
  showTree();
  EXPECT_FALSE(sold().isSound());
  EXPECT_TRUE(cash().isSound());
  answer(unsound, "OK");
  clickNode(sold(), SEL_RIGHTBUTTONPRESS, SEL_RIGHTBUTTONRELEASE, RIGHTBUTTON);
  sold().update();
  EXPECT_EQ(2u, boxes().size());
}

} // namespace
