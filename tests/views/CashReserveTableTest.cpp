#include "ViewsTest.h"
#include "books/UnreadableDates.h"
#include "session/BookQuestions.h"
#include "views/CashCells.h"

using namespace Tallymoor;
using testing::ElementsAre;

namespace {

class CashReserveTableTest : public ViewsTest {
protected:
  Table& table() { return *cash().table(); }
  /// Adds interest of 7.50 on 27 February and of 2.25 on the last day of the previous financial year to the
  /// entries of "Trading".
  SharePortfolioUser& addInterest() {
    SharePortfolioUser& user = addTrading();
    user.creditCash(Date(2026, 2, 27), 7.5, CASH_EVENT_INTEREST, u"INTEREST bank");
    user.creditCash(Date(2025, 6, 30), 2.25, CASH_EVENT_INTEREST, u"INTEREST old");
    return user;
  }
  std::string line(const std::string& start) {
    for (const std::string& label : labels(*cash().page()))
      if (label.compare(0, start.size(), start) == 0)
        return label;
    return "none";
  }
  std::string available() { return line("Total available"); }
  std::string interest() { return line("Total interest"); }
  const std::string editEntry = "Edit cash transaction from 27/02/2026...";
  const std::string deleteEntry = "Delete from records!...";
  const std::string question = "Are you sure you want to delete a record of this cash event? \nThis will "
                               "affect your Total Capital!";
};

TEST_F(CashReserveTableTest, DeclaresItsColumnsInOrder) {
  addInterest();
  showTree();
  EXPECT_THAT(titles(table()), ElementsAre("Description", "Credits", "Debits", "Balance"));
  std::vector<int> compareTypes;
  std::vector<FXuint> justify;
  for (const auto& column : table().columns()) {
    compareTypes.push_back(column->compareType());
    justify.push_back(column->justify());
    EXPECT_TRUE(column->defaultVisible());
    EXPECT_FALSE(column->editable());
  }
  constexpr FXuint RIGHT = FXTableItem::RIGHT;
  EXPECT_THAT(compareTypes, ElementsAre(0, 3, 3, 3));
  EXPECT_THAT(justify, ElementsAre(FXuint(FXTableItem::LEFT), RIGHT, RIGHT, RIGHT));
  EXPECT_EQ(String(u"Cash Reserve Table"), table().name());
}

TEST_F(CashReserveTableTest, ShowsTheEventsInTheOrderOfTheirDaysWithTheBalance) {
  addInterest();
  showTree();
  EXPECT_THAT(rowKeys(table()),
              ElementsAre("30/06/2025", "01/02/2026", "02/02/2026", "20/02/2026", "27/02/2026"));
  EXPECT_THAT(rowTexts(table(), 0), ElementsAre("INTEREST old", "$2.25", "", "$2.25"));
  EXPECT_THAT(rowTexts(table(), 1), ElementsAre("DEPOSIT start", "$5,000.00", "", "$5,002.25"));
  EXPECT_THAT(rowTexts(table(), 2),
              ElementsAre("BUY 100.00 of AAA.AX @ 10.0000", "", "$1,030.00", "$3,972.25"));
  EXPECT_THAT(rowTexts(table(), 3), ElementsAre("BUY 50.00 of AAA.AX @ 6.0000", "", "$320.00", "$3,652.25"));
  EXPECT_THAT(rowTexts(table(), 4), ElementsAre("INTEREST bank", "$7.50", "", "$3,659.75"));
}

TEST_F(CashReserveTableTest, InterestWithoutAReadableDateIsNotCountedAndNotToldAgain) {
  addInterest();
  const std::size_t last = numCashEntries() - 1;
  ASSERT_EQ("INTEREST old", textValue(cashEntry(last), u"Description").toUTF8());
  cashEntry(last - 1).subElement(u"Date").setValue(u"some day");
  ASSERT_EQ(setAsideUnreadableDates(records()).size(), 1u);
  showTree();
  EXPECT_EQ(std::string("$0.00"), interest().substr(interest().size() - 5)) << interest();
}

TEST_F(CashReserveTableTest, LinesBelowTellTheCashAndTheInterestOfTheFinancialYear) {
  addInterest();
  showTree();
  EXPECT_EQ("Total available cash reserve:    $3,659.75", available());
  EXPECT_EQ("Total interest this FY:          $7.50", interest());
}

TEST_F(CashReserveTableTest, InterestOfTheFirstDayOfTheFinancialYearCounts) {
  addInterest().creditCash(Date(2025, 7, 1), 1.0, CASH_EVENT_INTEREST, u"INTEREST first");
  showTree();
  EXPECT_EQ("Total interest this FY:          $8.50", interest());
}

TEST_F(CashReserveTableTest, YearWithoutInterestHasNone) {
  addTrading().creditCash(Date(2025, 6, 30), 2.25, CASH_EVENT_INTEREST, u"INTEREST old");
  showTree();
  EXPECT_EQ("Total interest this FY:          $0.00", interest());
}

TEST_F(CashReserveTableTest, ViewDateHasTheCashAndTheYearOfItsDay) {
  addInterest();
  showTree();
  viewDate(Date(2026, 2, 20));
  EXPECT_EQ(4, table().getNumRows());
  EXPECT_EQ("Total available cash reserve:    $3,652.25", available());
  EXPECT_EQ("Total interest this FY:          $0.00", interest());
  viewDate(Date(2025, 6, 30));
  EXPECT_THAT(rowKeys(table()), ElementsAre("30/06/2025"));
  EXPECT_EQ("Total interest this FY:          $2.25", interest());
}

TEST_F(CashReserveTableTest, EventsOfEarlierFinancialYearsCanBeHidden) {
  addInterest();
  hideLastFYTransactions = true;
  showTree();
  EXPECT_THAT(rowKeys(table()), ElementsAre("01/02/2026", "02/02/2026", "20/02/2026", "27/02/2026"));
}

TEST_F(CashReserveTableTest, DayWithoutARecordHasABalanceOfZero) {
  addInterest();
  showTree();
  cashEntry(3).subElement(u"Date").setValue(u"1/1/2020"); // Without informing the capital record.
  table().updateTable();
  EXPECT_THAT(rowTexts(table(), 0), ElementsAre("INTEREST bank", "$7.50", "", "$0.00"));
}

TEST_F(CashReserveTableTest, UnknownTypeIsADebitAsInTheBalance) {
  addInterest();
  cashEntry(3).subElement(u"Type").setValue(u"9");
  showTree();
  EXPECT_THAT(rowTexts(table(), 4), ElementsAre("INTEREST bank", "", "$7.50", "$3,644.75"));
}

TEST_F(CashReserveTableTest, HeadersAndCornerDoNotSort) {
  addInterest();
  showTree();
  leftClick(cash());
  const auto before = rowKeys(table());
  for (int clicks = 0; clicks < 2; ++clicks)
    for (FXint column = 0; column < table().getNumColumns(); ++column) {
      table().handle(table().getColumnHeader(), FXSEL(SEL_COMMAND, FXTable::ID_SELECT_COLUMN_INDEX),
                     reinterpret_cast<void*>(static_cast<FXival>(column)));
      EXPECT_EQ(before, rowKeys(table()));
      EXPECT_EQ(-1, table().sortColumn());
    }
  table().handle(table().getCornerButton(), FXSEL(SEL_COMMAND, FXTable::ID_SELECT_ALL), nullptr);
  EXPECT_EQ(before, rowKeys(table()));
  EXPECT_FALSE(table().sortReversed());
}

// ---- Commands of the rows ----

TEST_F(CashReserveTableTest, RowAndNodeOfferTheirCommands) {
  addInterest();
  showTree();
  EXPECT_THAT(popupOfRow(table(), 4, editEntry), ElementsAre(editEntry, deleteEntry));
  EXPECT_THAT(popupOf(cash(), "Deposit cash..."), ElementsAre("Deposit cash...", "Withdraw cash...",
                                                              "Receive Interest...", "Pay account fee..."));
}

TEST_F(CashReserveTableTest, DeletedEventIsGoneEverywhere) {
  addInterest();
  showTree();
  leftClick(cash());
  chooseFromRow(table(), 4, deleteEntry, [this] { answer(question, "Yes"); });
  EXPECT_EQ(4, table().getNumRows());
  EXPECT_EQ(4u, numCashEntries());
  EXPECT_EQ("Total available cash reserve:    $3,652.25", available());
  EXPECT_EQ("Total interest this FY:          $0.00", interest());
  EXPECT_EQ("$3,652.25", figure(node(u"Trading"), "Capital in cash"));
  EXPECT_EQ(&cash(), tree().shownItem());
}

TEST_F(CashReserveTableTest, NothingIsDeletedAtNo) {
  addInterest();
  showTree();
  chooseFromRow(table(), 4, deleteEntry, [this] { answer(question, "No"); });
  EXPECT_EQ(5, table().getNumRows());
  EXPECT_FALSE(root().takePortfoliosChanged());
}

TEST_F(CashReserveTableTest, EditedEventChangesEveryLaterBalance) {
  addInterest();
  showTree();
  chooseFromRow(table(), 1, "Edit cash transaction from 01/02/2026...", [this] {
    whenModal("Edit cash transaction", [this](FXWindow& dialog) {
      EXPECT_EQ("Edit cash transaction", title(dialog));
      EXPECT_EQ(5000.0, String(field(dialog, "Amount").getText().text()).toDouble());
      EXPECT_EQ("DEPOSIT start", std::string(field(dialog, "Description (optional)").getText().text()));
      type(field(dialog, "Amount"), "6000");
      type(field(dialog, "Date"), "31/01/2026");
      type(field(dialog, "Description (optional)"), "DEPOSIT more");
      press(dialog, "OK");
    });
  });
  EXPECT_THAT(rowTexts(table(), 1), ElementsAre("DEPOSIT more", "$6,000.00", "", "$6,002.25"));
  EXPECT_EQ("31/01/2026", rowKeys(table())[1]);
  EXPECT_EQ("$4,659.75", cellText(table(), 4, u"Balance"));
  EXPECT_EQ("$4,659.75", figure(node(u"Trading"), "Capital in cash"));
  EXPECT_EQ("4", textValue(cashEntry(0), u"Type").toUTF8());
}

TEST_F(CashReserveTableTest, CancelledEditChangesNothing) {
  addInterest();
  showTree();
  chooseFromRow(table(), 4, editEntry, [this] {
    whenModal("Edit cash transaction", [this](FXWindow& dialog) {
      type(field(dialog, "Amount"), "6000");
      press(dialog, "Cancel");
    });
  });
  EXPECT_EQ("$7.50", cellText(table(), 4, u"Credits"));
  EXPECT_FALSE(root().takePortfoliosChanged());
}

// ---- Commands of the node ----

TEST_F(CashReserveTableTest, NodeBooksDepositsWithdrawalsInterestAndFees) {
  addInterest();
  showTree();
  leftClick(cash());
  choose(cash(), "Deposit cash...", [this] { enterCash("Deposit cash", "100", "gift"); });
  choose(cash(), "Withdraw cash...", [this] { enterCash("Withdraw cash", "40", "rent"); });
  choose(cash(), "Receive Interest...", [this] { enterCash("Receive interest", "3", "bank"); });
  choose(cash(), "Pay account fee...", [this] { enterCash("Pay account fee", "9.95", "March"); });
  ASSERT_EQ(9, table().getNumRows());
  EXPECT_THAT(rowTexts(table(), 5), ElementsAre("DEPOSIT gift", "$100.00", "", "$3,712.80"));
  EXPECT_THAT(rowTexts(table(), 6), ElementsAre("WITHDRAWAL rent", "", "$40.00", "$3,712.80"));
  EXPECT_THAT(rowTexts(table(), 7), ElementsAre("INTEREST bank", "$3.00", "", "$3,712.80"));
  EXPECT_THAT(rowTexts(table(), 8), ElementsAre("Account fee March", "", "$9.95", "$3,712.80"));
  EXPECT_EQ("2", textValue(cashEntry(8), u"Type").toUTF8());
  EXPECT_EQ("Total available cash reserve:    $3,712.80", available());
  EXPECT_EQ("Total interest this FY:          $10.50", interest());
  EXPECT_EQ(&cash(), tree().shownItem());
}

TEST_F(CashReserveTableTest, FailuresOfCommandsAreReported) {
  addInterest();
  showTree();
  chooseFromRow(table(), 4, deleteEntry, [this] {
    failInside("Are you sure you want to delete a record of this cash event?");
    answer("CashReserveTable::onDelete failed. Exception : test", "OK");
  });
  chooseFromRow(table(), 4, editEntry, [this] {
    failInside("Edit cash transaction");
    answer("CashReserveTable::onEdit failed. Exception : test", "OK");
  });
  const std::vector<std::string> forms[] = {{"Deposit cash...", "Deposit cash", "onDeposit"},
                                            {"Withdraw cash...", "Withdraw cash", "onWithdraw"},
                                            {"Receive Interest...", "Receive interest", "onInterest"},
                                            {"Pay account fee...", "Pay account fee", "onFee"}};
  for (const auto& form : forms)
    choose(cash(), form[0], [&] {
      failInside(form[1]);
      answer("CashReserveTreeItem::" + form[2] + " failed. Exception : test", "OK");
    });
}

// ---- The node ----

TEST_F(CashReserveTableTest, FutureDatesAreReportedAndTheTableStillBuilds) {
  addInterest();
  cashEntry(3).subElement(u"Date").setValue(u"4/3/2026");
  answer("Portfolio Trading has a cash transaction\nINTEREST bank\nthat is in the future, and must be "
         "corrected.",
         "OK");
  showTree();
  EXPECT_EQ(1u, boxes().size());
  EXPECT_THAT(rowTexts(table(), 4), ElementsAre("INTEREST bank", "$7.50", "", "$0.00"));
}

TEST_F(CashReserveTableTest, CommandsOfABrokenNodeReportIt) {
  checkCashReserve(addInterest());
  cashEntry(3).subElement(u"Date").setValue(u"no date");
  const std::string unsound = "This portfolio has suffered an error. Please restart Tallymoor.";
  answer(unsound, "OK");
  showTree();
  EXPECT_FALSE(cash().isSound());
  answer(unsound, "OK");
  clickNode(cash(), SEL_RIGHTBUTTONPRESS, SEL_RIGHTBUTTONRELEASE, RIGHTBUTTON);
  for (const FXSelector id : {CashReserveTreeItem::ID_DEPOSIT, CashReserveTreeItem::ID_WITHDRAW,
                              CashReserveTreeItem::ID_INTEREST, CashReserveTreeItem::ID_FEE}) {
    answer(unsound, "OK");
    command(cash(), id);
  }
  EXPECT_EQ(6u, boxes().size());
}

} // namespace
