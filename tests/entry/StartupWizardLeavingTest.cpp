#include "FocusedWidget.h"
#include "StartupWizardTest.h"
#include "entry/FormComboBox.h"
#include "entry/RecordedEntries.h"
#include "widgets/FormNotes.h"

namespace Tallymoor {
namespace {

using StartupWizardLeavingTest = StartupWizardTest;

TEST_F(StartupWizardLeavingTest, EveryPageShowsWhatHasBeenRecorded) {
  const auto listed = [this] {
    return std::string(find<FormNotes>(*find<RecordedEntries>(wizard()))->getText().text());
  };
  EXPECT_EQ("Nothing yet.", listed());
  toSections();
  EXPECT_EQ("Cash\n02/02/2026  deposit $10,000.00\nCash reserve now: $10,000.00", listed());
  enterPurchase("OLD.AX", "15/01/2026");
  finishSection();
  enterPurchase("ABC.AX", "10/02/2026");
  finishSection();
  enterDividend("OLD.AX", "20/02/2026");
  finishSection();
  next();
  const std::string before =
      "Cash\n02/02/2026  deposit $10,000.00\n"
      "Shares held\n15/01/2026  100.00 OLD.AX at 5.00\n10/02/2026  100.00 ABC.AX at 5.00\n"
      "Dividends\n20/02/2026  OLD.AX $50.00\n"
      "Cash reserve now: $9,500.00";
  EXPECT_EQ(before, listed());
  fillSale("OLD.AX", "25/02/2026", "100");
  next();
  EXPECT_NE(std::string::npos, listed().find("Shares sold\n25/02/2026  100.00 OLD.AX at 6.00\n"));
  back();
  EXPECT_EQ(before, listed()) << "what was taken back is not listed";
  next();
  finishSection();
  next();
  set("Amount", "7");
  set("Date", "01/03/2026");
  next();
  EXPECT_NE(std::string::npos, listed().find("01/03/2026  interest $7.00"));
  EXPECT_TRUE(find<RecordedEntries>(wizard())->shown());
}

TEST_F(StartupWizardLeavingTest, TheListCountsHeldSharesAsOfTodayAndSoldOnesAsOfTheirDay) {
  toStage(1);
  next();
  fillPurchase("ABC.AX", "10/02/2026", "100", "5");
  next();
  auto& parcel = portfolio().heldShares()[0].parcels()[0];
  XMLElement& split = parcel.addSubElement(new XMLSplitAdjustment, u"Adjustments");
  split.subElement(u"StartDate").setValue(u"15/2/2026");
  split.subElement(u"Factor").setValue(u"5");
  finishSection();
  finishSection();
  next();
  fillSale("ABC.AX", "25/02/2026", "100");
  next();
  const std::string listed = find<FormNotes>(*find<RecordedEntries>(wizard()))->getText().text();
  EXPECT_NE(std::string::npos, listed.find("Shares held\n10/02/2026  400.00 ABC.AX at 1.00\n")) << listed;
  EXPECT_NE(std::string::npos, listed.find("Shares sold\n25/02/2026  100.00 ABC.AX at 6.00\n")) << listed;
}

TEST_F(StartupWizardLeavingTest, EnterInTheListContinues) {
  toSections();
  find<FormNotes>(*find<RecordedEntries>(wizard()))->setFocus();
  key(wizard(), KEY_Return);
  letEventsPass();
  EXPECT_EQ("Shares Already Held", pageTitle());
}

TEST_F(StartupWizardLeavingTest, TheKeyboardComesBackFromTheProgressWindow) {
  toSections();
  enterPurchase("OLD.AX", "15/01/2026");
  finishSection();
  finishSection();
  ASSERT_FALSE(wizard().hasFocus()) << "without a window manager nothing has the keyboard by itself";
  next();
  EXPECT_EQ("Dividends Received", pageTitle());
  EXPECT_TRUE(wizard().hasFocus());
  EXPECT_EQ(find<FormComboBox>(page())->textField(), focused(wizard()));
}

TEST_F(StartupWizardLeavingTest, LeavingAsksBeforeItDiscardsRecordedEntries) {
  const char* question =
      "If you leave now, the portfolio Trading is dropped\nwith all that you have entered here.\n"
      "Do you want to leave?";
  toSections();
  const std::string before = document();
  answer(question, "No");
  press(*wizard().cancelButton());
  answer(question, "No");
  key(wizard(), KEY_Escape);
  answer(question, "No");
  wizard().handle(&app(), FXSEL(SEL_CLOSE, 0), nullptr);
  EXPECT_EQ(3u, boxes().size());
  EXPECT_TRUE(wizard().shown());
  EXPECT_EQ(before, document());
  next(); // The wizard continues.
  EXPECT_EQ("Shares Already Held", pageTitle());
  answer(question, "Yes");
  wizard().handle(&app(), FXSEL(SEL_CLOSE, 0), nullptr);
  EXPECT_FALSE(wizard().shown());
  EXPECT_EQ(0u, portfolios());
}

TEST_F(StartupWizardLeavingTest, LeavingAsksNothingBeforeAnythingWasRecorded) {
  toCash();
  press(*wizard().cancelButton());
  EXPECT_TRUE(boxes().empty());
  EXPECT_FALSE(wizard().shown());
  EXPECT_EQ(0u, portfolios());
}

TEST_F(StartupWizardLeavingTest, TheEndOfTheProgramIsNotAskedAbout) {
  toSections();
  wizard().handle(&mainWindow(), FXSEL(SEL_COMMAND, FXDialogBox::ID_CANCEL), nullptr);
  EXPECT_TRUE(boxes().empty());
  EXPECT_FALSE(wizard().shown());
}

} // namespace
} // namespace Tallymoor
