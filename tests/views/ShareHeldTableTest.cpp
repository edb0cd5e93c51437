#include "ViewsTest.h"
#include "books/UnreadableDates.h"
#include "views/HeldShareCells.h"
#include "xml/Leaves.h"

using namespace Tallymoor;
using testing::ElementsAre;

namespace {

class ShareHeldTableTest : public ViewsTest {
protected:
  SharesHeldTable& table(const String& code = u"AAA.AX") { return *purchases(u"Trading", code)->table(); }
  /// The purchase's brokerage of 20.00 differs from the default.
  void answerChecks() { answer("Would you like to make this the default brokerage rate?", "No"); }
  const std::string deletion = "Warning! Deleting this share will affect the Total Capital.\n If you sold "
                               "this share, use the \"Sell Share\" "
                               "menu. \nThis action should only be used to correct a mistake. \n";
};

TEST_F(ShareHeldTableTest, DeclaresItsColumnsInOrder) {
  addTrading();
  showTree();
  EXPECT_THAT(titles(table()),
              ElementsAre("Number", "Buy price", "Price Now", "Purchase Value", "Current Value", "Day Move",
                          "Day Gain", "Day %", "Week %", "Month %", "Gain %", "Annualised Gain %",
                          "Gross Gain $", "Buy Date", "Days Held", "Comment"));
  for (const auto& column : table().columns()) {
    EXPECT_TRUE(column->defaultVisible());
    EXPECT_FALSE(column->editable());
  }
  EXPECT_EQ(COMPARE_OLDEST_FIRST, table().getColumn(&HeldShareCells::buyDate).compareType());
}

TEST_F(ShareHeldTableTest, TwoPurchasesOfOneDayAreTwoRows) {
  SharePortfolioUser& user = addTrading();
  user.buyShares(u"AAA.AX", {Date(2026, 2, 20), 7, 6.0, 0.0, String()});
  showTree();
  EXPECT_THAT(rowKeys(table()), ElementsAre("02/02/2026", "20/02/2026", "20/02/2026"));
  EXPECT_EQ("50.00", cellText(table(), 1, u"Number"));
  EXPECT_EQ("7.00", cellText(table(), 2, u"Number"));
}

TEST_F(ShareHeldTableTest, APurchaseWithoutAReadableDateIsShownAndCountsInNoTotal) {
  SharePortfolioUser& user = addTrading();
  user.buyShares(u"AAA.AX", {Date(2026, 2, 23), 7, 6.0, 0.0, String()});
  user.findHeldShare(u"AAA.AX")->parcels()[2].subElement(u"BuyDate").setValue(u"31/2");
  ASSERT_EQ(setAsideUnreadableDates(records()).size(), 1u);
  showTree();
  EXPECT_THAT(rowKeys(table()), ElementsAre("02/02/2026", "20/02/2026", "01/01/9999"));
  EXPECT_EQ("7.00", cellText(table(), 2, u"Number"));
  EXPECT_EQ("$1,650.00", total(*purchases(u"Trading", u"AAA.AX"), &HeldShareCells::currentValue));
  EXPECT_EQ("$1,650.00", total(held(u"Trading"), &HeldShareCells::currentValue));
  EXPECT_EQ("$1,650.00", figure(node(u"Trading"), "Capital in shares"));
  EXPECT_EQ(total(held(u"Trading"), &HeldShareCells::dayPercent),
            total(*purchases(u"Trading", u"AAA.AX"), &HeldShareCells::dayPercent));
  EXPECT_DOUBLE_EQ(250, user.numHeld(u"AAA.AX"));
}

TEST_F(ShareHeldTableTest, PurchasesNeverWarn) {
  SharePortfolioUser& user = addTrading();
  showTree();
  user.setMinMax(*user.findHeldShare(u"AAA.AX"), 7.0, 0.0);
  table().updateTable();
  EXPECT_TRUE(window().warnings.empty());
  EXPECT_EQ(TableItem::NO_COLOUR, cellColour(table(), 0, u"Price Now"));
}

TEST_F(ShareHeldTableTest, TheCommentOfAPurchaseHasAColumn) {
  SharePortfolioUser& user = addTrading();
  user.buyShares(u"AAA.AX", {Date(2026, 2, 23), 7, 6.0, 0.0, u"on a tip"});
  showTree();
  EXPECT_EQ("", cellText(table(), 0, u"Comment"));
  EXPECT_EQ("on a tip", cellText(table(), 2, u"Comment"));
}

TEST_F(ShareHeldTableTest, ADoubleClickEditsThePurchase) {
  addTrading();
  showTree();
  whenModal("Edit share purchase for AAA.AX on 20/02/2026",
            [this](FXWindow& dialog) { press(dialog, "Cancel"); });
  doubleClick(table(), 1, u"Number");
}

TEST_F(ShareHeldTableTest, RowOffersItsCommands) {
  addTrading();
  showTree();
  EXPECT_THAT(popupOfRow(table(), 1, "Delete from records!..."),
              ElementsAre("Sell AAA.AX...", "Buy AAA.AX...", "Price history...",
                          "Edit purchase from 20/02/2026...", "Delete from records!..."));
}

TEST_F(ShareHeldTableTest, DeletingAPurchaseTakesItsCashEntryAlong) {
  addTrading();
  showTree();
  leftClick(*purchases(u"Trading", u"AAA.AX"));
  // The first parcel is shown as 200 because of the split, and is found by that number.
  chooseFromRow(table(), 0, "Delete from records!...", [this] {
    answer(deletion + "Continue to delete the share purchase of AAA.AX at 02/02/2026?", "Yes");
  });
  EXPECT_EQ(1u, boxes().size());
  EXPECT_THAT(rowKeys(table()), ElementsAre("20/02/2026"));
  EXPECT_EQ("50.00", cellText(*held(u"Trading").table(), 0, u"Number"));
  EXPECT_EQ(2u, numCashEntries());
  EXPECT_EQ("$4,680.00", figure(node(u"Trading"), "Capital in cash"));
  EXPECT_EQ(purchases(u"Trading", u"AAA.AX"), tree().shownItem());
}

TEST_F(ShareHeldTableTest, DeletingThatFindsNoCashEntrySaysSo) {
  addTrading();
  showTree();
  cashEntry(2).subElement(u"Value").setValue(u"1.00");
  chooseFromRow(table(), 1, "Delete from records!...", [this] {
    answer(deletion + "Continue to delete the share purchase of AAA.AX at 20/02/2026?", "Yes");
    answer("Please find and delete the corresponding cash withdrawal from this transaction.", "OK");
  });
  EXPECT_THAT(rowKeys(table()), ElementsAre("02/02/2026"));
  EXPECT_EQ(3u, numCashEntries());
}

TEST_F(ShareHeldTableTest, NodeOfTheLastPurchaseGoesFromUnderItsOwnPopup) {
  SharePortfolioUser& user = addTrading();
  buy(user, u"BBB.AX", 10, 2.0);
  showTree();
  leftClick(*purchases(u"Trading", u"BBB.AX"));
  chooseFromRow(table(u"BBB.AX"), 0, "Delete from records!...", [this] {
    answer(deletion + "Continue to delete the share purchase of BBB.AX at 02/02/2026?", "Yes");
  });
  EXPECT_THAT(childLabels(held(u"Trading")), ElementsAre("AAA.AX Purchases"));
  EXPECT_EQ(&held(u"Trading"), tree().shownItem());
  EXPECT_EQ(tree().getCurrentItem(), &held(u"Trading"));
}

TEST_F(ShareHeldTableTest, APriceDuringTheBoxOfADeletionReadsNoDeletedRecord) {
  addTrading();
  showTree();
  held(u"Trading").table(); // has been made
  cashEntry(1).subElement(u"Value").setValue(u"1.00");
  market().setCurrentPrice(u"AAA.AX", 7.2);
  chooseFromRow(table(), 0, "Delete from records!...", [this] {
    answer(deletion + "Continue to delete the share purchase of AAA.AX at 02/02/2026?", "Yes");
    whenModal("Please find and delete the corresponding cash withdrawal", [this](FXWindow& box) {
      held(u"Trading").table()->currentPriceUpdated(u"AAA.AX", 7.2);
      purchases(u"Trading", u"AAA.AX")->table()->currentPriceUpdated(u"AAA.AX", 7.2);
      letEventsPass();
      EXPECT_EQ("250.00", cellText(*held(u"Trading").table(), 0, u"Number"));
      press(box, "OK");
    });
  });
  EXPECT_EQ("50.00", cellText(*held(u"Trading").table(), 0, u"Number"));
}

TEST_F(ShareHeldTableTest, EditedPurchaseShowsEverywhere) {
  addTrading();
  showTree();
  leftClick(*purchases(u"Trading", u"AAA.AX"));
  chooseFromRow(table(), 1, "Edit purchase from 20/02/2026...", [this] {
    whenModal("Edit share purchase for AAA.AX on 20/02/2026", [this](FXWindow& dialog) {
      type(field(dialog, "Number bought"), "60");
      answerChecks();
      press(dialog, "OK");
    });
  });
  EXPECT_EQ("60.00", cellText(table(), 1, u"Number"));
  EXPECT_EQ("260.00", cellText(*held(u"Trading").table(), 0, u"Number"));
  EXPECT_EQ("$3,590.00", figure(node(u"Trading"), "Capital in cash"));
  EXPECT_TRUE(root().takePortfoliosChanged());
}

TEST_F(ShareHeldTableTest, EditThatTheCashCouldNotFollowSaysSo) {
  addTrading();
  showTree();
  cashEntry(2).subElement(u"Value").setValue(u"1.00");
  chooseFromRow(table(), 1, "Edit purchase from 20/02/2026...", [this] {
    whenModal("Edit share purchase for AAA.AX on 20/02/2026", [this](FXWindow& dialog) {
      type(field(dialog, "Number bought"), "60");
      answerChecks();
      answer("Please find and edit the corresponding cash withdrawal for this transaction.", "OK");
      press(dialog, "OK");
    });
  });
  EXPECT_EQ("60.00", cellText(table(), 1, u"Number"));
}

TEST_F(ShareHeldTableTest, EditAtTheSameCostSaysNothing) {
  addTrading();
  showTree();
  cashEntry(2).subElement(u"Value").setValue(u"1.00");
  chooseFromRow(table(), 1, "Edit purchase from 20/02/2026...", [this] {
    whenModal("Edit share purchase for AAA.AX on 20/02/2026", [this](FXWindow& dialog) {
      type(field(dialog, "Number bought"), "100");
      type(field(dialog, "Share price"), "3");
      answerChecks();
      whenModal("The price of 3.00 is far from that of AAA.AX on 20/02/2026, which was 5.50.",
                [this](FXWindow& box) { press(box, "Yes"); });
      press(dialog, "OK");
    });
  });
  EXPECT_EQ("100.00", cellText(table(), 1, u"Number"));
}

TEST_F(ShareHeldTableTest, CancelledEditChangesNothing) {
  addTrading();
  showTree();
  chooseFromRow(table(), 1, "Edit purchase from 20/02/2026...", [this] {
    whenModal("Edit share purchase for AAA.AX on 20/02/2026", [this](FXWindow& dialog) {
      type(field(dialog, "Number bought"), "60");
      press(dialog, "Cancel");
    });
  });
  EXPECT_EQ("50.00", cellText(table(), 1, u"Number"));
  EXPECT_FALSE(root().takePortfoliosChanged());
}

TEST_F(ShareHeldTableTest, FailuresOfCommandsAreReported) {
  addTrading();
  showTree();
  chooseFromRow(table(), 0, "Edit purchase from 02/02/2026...", [this] {
    failInside("Edit share purchase for AAA.AX on 02/02/2026");
    answer("ShareHeldTable::onEdit failed. Exception : test", "OK");
  });
  chooseFromRow(table(), 0, "Delete from records!...", [this] {
    failInside("Continue to delete the share purchase of AAA.AX at 02/02/2026?");
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
}

} // namespace
