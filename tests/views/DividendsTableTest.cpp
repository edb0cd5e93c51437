#include "ViewsTest.h"
#include "books/UnreadableDates.h"
#include "market/StockNames.h"
#include "views/DividendCells.h"

using namespace Tallymoor;
using namespace Tallymoor::DividendCells;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DividendsTableTest : public ViewsTest {
protected:
  Table& table() { return *dividends().table(); }
  /// Adds three dividends to the purchases of "Trading": 0.10 on 200 shares, fully franked, in cash, on 17
  /// February; 0.05 on 250, 50% franked, as 2 shares at 6.25, on the 24th; 0.02 on 100, unfranked, from New
  /// Zealand, on 2 March.
  SharePortfolioUser& addDividends() {
    SharePortfolioUser& user = addTrading();
    user.receiveDividend({u"AAA.AX", Date(2026, 2, 17), 200, 0.10, 100, 0.0, 0.0, String(), 0.0});
    user.receiveDividend({u"AAA.AX", Date(2026, 2, 24), 250, 0.05, 50, 2.0, 6.25, String(), 0.0});
    user.receiveDividend({u"AAA.AX", Date(2026, 3, 2), 100, 0.02, 0, 0.0, 0.0, u"New Zealand", 0.3});
    return user;
  }
  XMLDividendEvent& event(std::size_t index) {
    return portfolios()[u"Trading"]->portfolio().dividends()[index];
  }
  void showHiddenColumns() {
    Settings::Instance().writeUnsigned(u"Upgrades", u"Visible Columns Dividends Table", 1);
    for (const char16_t* title : {u"Foreign Source", u"Withholding Tax"})
      Settings::Instance().writeUnsigned(u"Visible Columns Dividends Table", title, 1);
  }
  const std::string deleteEntry = "Delete from records!...";
  const std::string editCash = "Edit dividend for AAA.AX on 17/02/2026...";
  const std::string editShares = "Edit dividend for AAA.AX on 24/02/2026...";
};

TEST_F(DividendsTableTest, DeclaresItsColumnsInOrder) {
  addDividends();
  showTree();
  EXPECT_THAT(titles(table()),
              ElementsAre("Code", "Name", "On Num Held", "Rate", "Value", "% Franked", "Franking Credit",
                          "Received As", "Foreign Source", "Withholding Tax"));
  std::vector<int> compareTypes;
  std::vector<FXuint> justify;
  std::vector<bool> visible;
  for (const auto& column : table().columns()) {
    compareTypes.push_back(column->compareType());
    justify.push_back(column->justify());
    visible.push_back(column->defaultVisible());
    EXPECT_FALSE(column->editable());
  }
  constexpr FXuint LEFT = FXTableItem::LEFT;
  constexpr FXuint RIGHT = FXTableItem::RIGHT;
  EXPECT_THAT(compareTypes, ElementsAre(0, 0, 5, 5, 3, 4, 3, 0, 0, 3));
  EXPECT_THAT(justify, ElementsAre(LEFT, LEFT, RIGHT, RIGHT, RIGHT, RIGHT, RIGHT, 0u, 0u, RIGHT));
  EXPECT_THAT(visible, ElementsAre(true, true, true, true, true, true, true, true, false, false));
  EXPECT_EQ(String(u"Dividends Table"), table().name());
}

TEST_F(DividendsTableTest, ShowsEachDividend) {
  addDividends();
  showTree();
  EXPECT_THAT(rowKeys(table()), ElementsAre("17/02/2026", "24/02/2026", "02/03/2026"));
  EXPECT_THAT(rowTexts(table(), 0),
              ElementsAre("AAA.AX", "", "200.00", "0.100000", "$20.00", "100.00%", "$8.57", "Cash"));
  EXPECT_THAT(rowTexts(table(), 1), ElementsAre("AAA.AX", "", "250.00", "0.050000", "$12.50", "50.00%",
                                                "$2.68", "2.00 shares at 6.2500"));
  EXPECT_THAT(rowTexts(table(), 2),
              ElementsAre("AAA.AX", "", "100.00", "0.020000", "$2.00", "0.00%", "$0.00", "Cash"));
}

TEST_F(DividendsTableTest, TheCompanysNameStandsBesideTheCode) {
  StockNames::remember(u"AAA.AX", u"Alpha Mining");
  addDividends();
  showTree();
  EXPECT_EQ("Alpha Mining", cellText(table(), 0, u"Name"));
}

TEST_F(DividendsTableTest, TotalsAreSumsUnderTheirColumns) {
  addDividends();
  showTree();
  EXPECT_EQ("$34.50", total(dividends(), &value));
  EXPECT_EQ("$11.25", total(dividends(), &frankingCreditOf)); // 8.5714 plus 2.6786.
  EXPECT_EQ("none", total(dividends(), &percentFranked));
}

TEST_F(DividendsTableTest, NoDividendsGiveAnEmptyTableAndTotalsOfZero) {
  addTrading();
  showTree();
  EXPECT_THAT(rowKeys(table()), IsEmpty());
  EXPECT_EQ("$0.00", total(dividends(), &value));
  EXPECT_EQ("$0.00", total(dividends(), &frankingCreditOf));
}

TEST_F(DividendsTableTest, ForeignSourceAndTaxAreShownWhenChosenInTheColumnDialog) {
  addDividends();
  showTree();
  EXPECT_EQ(8, table().getNumColumns());
  whenModal("Select columns...", [this](FXWindow& popup) { press(popup, "Select columns..."); });
  whenModal("Foreign Source", [this](FXWindow& dialog) {
    press(dialog, "Foreign Source");
    press(dialog, "Withholding Tax");
    press(dialog, "OK");
  });
  FXEvent event{};
  event.win_x = 5;
  bringToFront(table());
  FXHeader& header = *table().getColumnHeader();
  event.type = SEL_RIGHTBUTTONPRESS;
  header.handle(&app(), FXSEL(SEL_RIGHTBUTTONPRESS, 0), &event);
  event.type = SEL_RIGHTBUTTONRELEASE;
  header.handle(&app(), FXSEL(SEL_RIGHTBUTTONRELEASE, 0), &event);
  letEventsPass();
  EXPECT_EQ("", cellText(table(), 0, u"Foreign Source"));
  EXPECT_EQ("$0.00", cellText(table(), 0, u"Withholding Tax"));
  EXPECT_EQ("New Zealand", cellText(table(), 2, u"Foreign Source"));
  EXPECT_EQ("$0.30", cellText(table(), 2, u"Withholding Tax"));
}

TEST_F(DividendsTableTest, DividendsAfterTheViewDateHaveNoRow) {
  addDividends();
  showTree();
  viewDate(Date(2026, 2, 24));
  EXPECT_THAT(rowKeys(table()), ElementsAre("17/02/2026", "24/02/2026"));
  EXPECT_EQ("$32.50", total(dividends(), &value));
}

TEST_F(DividendsTableTest, DividendsOfEarlierFinancialYearsCanBeHidden) {
  addDividends();
  event(0).subElement(u"ReceiveDate").setValue(u"30/6/2025");
  event(1).subElement(u"ReceiveDate").setValue(u"1/7/2025");
  hideLastFYTransactions = true;
  showTree();
  EXPECT_THAT(rowKeys(table()), ElementsAre("01/07/2025", "02/03/2026"));
}

// ---- Commands ----

TEST_F(DividendsTableTest, RowAndNodeOfferTheirCommands) {
  addDividends();
  showTree();
  EXPECT_THAT(popupOfRow(table(), 0, editCash), ElementsAre(editCash, deleteEntry));
  EXPECT_THAT(popupOf(dividends(), "Receive a dividend..."), ElementsAre("Receive a dividend..."));
}

TEST_F(DividendsTableTest, ReceivingOneFromTheNode) {
  addDividends();
  showTree();
  leftClick(dividends());
  choose(dividends(), "Receive a dividend...", [this] {
    whenModal("Receive a dividend", [this](FXWindow& dialog) {
      find<FXComboBox>(dialog)->setCurrentItem(1, TRUE);
      type(field(dialog, "On Shares Held"), "100");
      type(field(dialog, "Dividend Rate"), "0.07");
      press(dialog, "OK");
    });
  });
  EXPECT_THAT(rowKeys(table()), ElementsAre("17/02/2026", "24/02/2026", "02/03/2026", "03/03/2026"));
  EXPECT_EQ("$7.00", cellText(table(), 3, u"Value"));
  EXPECT_EQ("$3.00", cellText(table(), 3, u"Franking Credit"));
  EXPECT_EQ("$41.50", total(dividends(), &value));
}

TEST_F(DividendsTableTest, DeletingACashDividendTakesItsDepositAway) {
  addDividends();
  showTree();
  leftClick(dividends());
  chooseFromRow(table(), 0, deleteEntry,
                [this] { answer("Delete dividend of AAA.AX on 17/02/2026?", "Yes"); });
  EXPECT_EQ(1u, boxes().size());
  EXPECT_THAT(rowKeys(table()), ElementsAre("24/02/2026", "02/03/2026"));
  EXPECT_EQ("$3,652.00", figure(node(u"Trading"), "Capital in cash"));
  EXPECT_EQ("$14.50", total(dividends(), &value));
  EXPECT_EQ(&dividends(), tree().shownItem());
  EXPECT_TRUE(root().takePortfoliosChanged());
}

TEST_F(DividendsTableTest, DeletingAReinvestedDividendTakesItsSharesAway) {
  addDividends();
  showTree();
  EXPECT_EQ("252.00", cellText(*held(u"Trading").table(), 0, u"Number"));
  chooseFromRow(table(), 1, deleteEntry,
                [this] { answer("Delete dividend of AAA.AX on 24/02/2026?", "Yes"); });
  EXPECT_EQ(1u, boxes().size());
  EXPECT_EQ("250.00", cellText(*held(u"Trading").table(), 0, u"Number"));
}

TEST_F(DividendsTableTest, NothingIsDeletedAtNo) {
  addDividends();
  showTree();
  chooseFromRow(table(), 0, deleteEntry,
                [this] { answer("Delete dividend of AAA.AX on 17/02/2026?", "No"); });
  EXPECT_EQ(3, table().getNumRows());
  EXPECT_FALSE(root().takePortfoliosChanged());
}

TEST_F(DividendsTableTest, DeletingThatFindsNoDepositSaysSo) {
  addDividends();
  showTree();
  cashEntry(3).subElement(u"Value").setValue(u"1.00");
  chooseFromRow(table(), 0, deleteEntry, [this] {
    answer("Delete dividend of AAA.AX on 17/02/2026?", "Yes");
    answer("Please find and delete the corresponding cash deposit from this transaction.", "OK");
  });
  EXPECT_EQ(2, table().getNumRows());
}

TEST_F(DividendsTableTest, DeletingThatFindsNoSharesSaysSo) {
  addDividends();
  auto& parcel = portfolios()[u"Trading"]->findHeldShare(u"AAA.AX")->parcels()[2];
  parcel.subElement(u"NumHeld").setValue(u"3.00");
  showTree();
  chooseFromRow(table(), 1, deleteEntry, [this] {
    answer("Delete dividend of AAA.AX on 24/02/2026?", "Yes");
    answer("Please find and delete the corresponding reinvested shares from this dividend.", "OK");
  });
  EXPECT_EQ(2, table().getNumRows());
  EXPECT_EQ("253.00", cellText(*held(u"Trading").table(), 0, u"Number"));
}

TEST_F(DividendsTableTest, EditedCashDividendMovesItsDeposit) {
  addDividends();
  showTree();
  chooseFromRow(table(), 0, editCash, [this] {
    whenModal("Edit dividend of AAA.AX on 17/02/2026", [this](FXWindow& dialog) {
      type(field(dialog, "Dividend Rate"), "0.20");
      type(field(dialog, "Date Received"), "18/02/2026");
      press(dialog, "OK");
    });
  });
  EXPECT_TRUE(boxes().empty());
  EXPECT_THAT(rowKeys(table()), ElementsAre("18/02/2026", "24/02/2026", "02/03/2026"));
  EXPECT_EQ("$40.00", cellText(table(), 0, u"Value"));
  EXPECT_EQ("$54.50", total(dividends(), &value));
  EXPECT_EQ("$3,692.00", figure(node(u"Trading"), "Capital in cash"));
  EXPECT_EQ("DIVIDEND AAA.AX @ 0.200000 x 200.00", textValue(cashEntry(3), u"Description").toUTF8());
  EXPECT_TRUE(root().takePortfoliosChanged());
}

TEST_F(DividendsTableTest, EditedReinvestedDividendMovesItsShares) {
  addDividends();
  showTree();
  chooseFromRow(table(), 1, editShares, [this] {
    whenModal("Edit dividend of AAA.AX on 24/02/2026", [this](FXWindow& dialog) {
      type(field(dialog, "Shares received"), "5");
      press(dialog, "OK");
    });
  });
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ("5.00 shares at 6.2500", cellText(table(), 1, u"Received As"));
  EXPECT_EQ("255.00", cellText(*held(u"Trading").table(), 0, u"Number"));
}

TEST_F(DividendsTableTest, ReinvestedDividendMayTurnIntoCash) {
  addDividends();
  showTree();
  chooseFromRow(table(), 1, editShares, [this] {
    whenModal("Edit dividend of AAA.AX on 24/02/2026", [this](FXWindow& dialog) {
      press(dialog, "Paid in cash");
      press(dialog, "OK");
    });
  });
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ("Cash", cellText(table(), 1, u"Received As"));
  EXPECT_EQ("250.00", cellText(*held(u"Trading").table(), 0, u"Number"));
  EXPECT_EQ("$3,684.50", figure(node(u"Trading"), "Capital in cash"));
}

TEST_F(DividendsTableTest, EditThatTheDepositCouldNotFollowSaysSo) {
  addDividends();
  showTree();
  cashEntry(3).subElement(u"Value").setValue(u"1.00");
  chooseFromRow(table(), 0, editCash, [this] {
    whenModal("Edit dividend of AAA.AX on 17/02/2026", [this](FXWindow& dialog) {
      type(field(dialog, "Dividend Rate"), "0.20");
      answer("Please find and edit the corresponding cash deposit from this transaction.", "OK");
      press(dialog, "OK");
    });
  });
  EXPECT_EQ("$40.00", cellText(table(), 0, u"Value"));
}

TEST_F(DividendsTableTest, EditThatTheSharesCouldNotFollowSaysSo) {
  addDividends();
  portfolios()[u"Trading"]
      ->findHeldShare(u"AAA.AX")
      ->subElement(u"BuyEvents", 2)
      .subElement(u"NumHeld")
      .setValue(u"3.00");
  showTree();
  chooseFromRow(table(), 1, editShares, [this] {
    whenModal("Edit dividend of AAA.AX on 24/02/2026", [this](FXWindow& dialog) {
      type(field(dialog, "Shares received"), "5");
      answer("Please find and edit the corresponding reinvested held shares from this transaction.", "OK");
      press(dialog, "OK");
    });
  });
  EXPECT_EQ("5.00 shares at 6.2500", cellText(table(), 1, u"Received As"));
  EXPECT_EQ("253.00", cellText(*held(u"Trading").table(), 0, u"Number"));
}

TEST_F(DividendsTableTest, CancelledEditChangesNothing) {
  addDividends();
  showTree();
  chooseFromRow(table(), 0, editCash, [this] {
    whenModal("Edit dividend of AAA.AX on 17/02/2026", [this](FXWindow& dialog) {
      type(field(dialog, "Dividend Rate"), "0.20");
      press(dialog, "Cancel");
    });
  });
  EXPECT_EQ("$20.00", cellText(table(), 0, u"Value"));
  EXPECT_FALSE(root().takePortfoliosChanged());
}

TEST_F(DividendsTableTest, ForeignDividendKeepsItsCountryAndTaxThroughAnEdit) {
  showHiddenColumns();
  addDividends();
  showTree();
  chooseFromRow(table(), 2, "Edit dividend for AAA.AX on 02/03/2026...", [this] {
    whenModal("Edit dividend of AAA.AX on 02/03/2026", [this](FXWindow& dialog) {
      type(field(dialog, "On Shares Held"), "150");
      press(dialog, "OK");
    });
  });
  EXPECT_EQ("$3.00", cellText(table(), 2, u"Value"));
  EXPECT_EQ("New Zealand", cellText(table(), 2, u"Foreign Source"));
  EXPECT_EQ("$0.30", cellText(table(), 2, u"Withholding Tax"));
}

TEST_F(DividendsTableTest, FailuresOfCommandsAreReported) {
  addDividends();
  showTree();
  chooseFromRow(table(), 0, deleteEntry, [this] {
    failInside("Delete dividend of AAA.AX on 17/02/2026?");
    answer("DividendsTable::onDelete failed. Exception : test", "OK");
  });
  chooseFromRow(table(), 0, editCash, [this] {
    failInside("Edit dividend of AAA.AX on 17/02/2026");
    answer("DividendsTable::onEdit failed. Exception : test", "OK");
  });
  choose(dividends(), "Receive a dividend...", [this] {
    failInside("Receive a dividend");
    answer("DividendsTreeItem::onReceiveDividends failed. Exception : test", "OK");
  });
}

// ---- The node ----

TEST_F(DividendsTableTest, FutureDatesAreReportedAndTheTableStillBuilds) {
  addDividends();
  event(0).subElement(u"ReceiveDate").setValue(u"4/3/2026");
  answer("Portfolio Trading has a dividend for \nAAA.AX\nthat is in the future, and must be corrected.",
         "OK");
  showTree();
  EXPECT_EQ(1u, boxes().size());
  EXPECT_THAT(rowKeys(table()), ElementsAre("24/02/2026", "02/03/2026", "04/03/2026"));
}

TEST_F(DividendsTableTest, AnUnreadableDateIsNotReportedAgain) {
  addDividends();
  event(0).subElement(u"ReceiveDate").setValue(u"some day");
  ASSERT_EQ(setAsideUnreadableDates(records()).size(), 1u);
  showTree();
  EXPECT_TRUE(boxes().empty());
  EXPECT_TRUE(dividends().isSound());
}

TEST_F(DividendsTableTest, APriceDuringTheBoxOfAReloadFindsValidRecords) {
  addDividends();
  event(0).subElement(u"ReceiveDate").setValue(u"4/3/2026");
  const std::string future =
      "Portfolio Trading has a dividend for \nAAA.AX\nthat is in the future, and must be corrected.";
  answer(future, "OK");
  showTree();
  market().setCurrentPrice(u"AAA.AX", 10.0);
  whenModal(future, [this](FXWindow& box) {
    runPass();
    press(box, "OK");
  });
  root().reloadPortfolios();
  EXPECT_EQ("$2,520.00", figure(node(u"Trading"), "Capital in shares"));
  EXPECT_EQ("$6,192.00", figure(root(), "Total Capital"));
}

TEST_F(DividendsTableTest, AnUnreadableDateBreaksTheNode) {
  addDividends();
  event(0).subElement(u"ReceiveDate").setValue(u"no date");
  const std::string unsound = "This portfolio has suffered an error. Please restart Tallymoor.";
  answer(unsound, "OK");
  showTree();
  EXPECT_FALSE(dividends().isSound());
  answer(unsound, "OK");
  clickNode(dividends(), SEL_RIGHTBUTTONPRESS, SEL_RIGHTBUTTONRELEASE, RIGHTBUTTON);
  answer(unsound, "OK");
  command(dividends(), DividendsTreeItem::ID_RECEIVE_DIVIDENDS);
  EXPECT_EQ(3u, boxes().size());
}

} // namespace
