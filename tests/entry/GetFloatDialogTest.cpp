#include "entry/GetFloatDialog.h"
#include "FocusedWidget.h"
#include "entry/EditFloatDialog.h"
#include "entry/GetFloatPanel.h"
#include "foundation/Exception.h"
#include "support/windows/WindowTest.h"
#include "xml/PortfolioRecords.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

using GetFloatDialogTest = WindowTest;

TEST_F(GetFloatDialogTest, TakesAnAmountFromTheKeyboardAlone) {
  GetFloatDialog dialog(&mainWindow(), u"Deposit cash", u"How much?");
  EXPECT_TRUE(shows(dialog, "How much?"));
  whenModal("Deposit cash", [&](FXWindow& form) {
    EXPECT_EQ(&field(form, "Amount"), focused(form));
    EXPECT_TRUE(field(form, "Amount").isPosSelected(0)); // Typing replaces the selected "0.00".
    EXPECT_TRUE(field(form, "Amount").isPosSelected(3));
    answer("You must enter the value.", "OK");
    key(form, KEY_Return);
    EXPECT_TRUE(form.shown());
    type(field(form, "Amount"), "250");
    type(field(form, "Description (optional)"), "savings");
    key(form, KEY_Return);
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(250.0, dialog.panel()->value());
  EXPECT_EQ(Date(2026, 3, 3), dialog.panel()->date());
  EXPECT_EQ(String(u"savings"), dialog.panel()->text());
}

TEST_F(GetFloatDialogTest, WithoutAHeadingItShowsItsTitle) {
  GetFloatDialog dialog(&mainWindow(), u"Withdraw cash");
  EXPECT_TRUE(shows(dialog, "Withdraw cash"));
  whenModal("Withdraw cash", [&](FXWindow& form) { key(form, KEY_Escape); });
  EXPECT_EQ(0u, dialog.execute());
}

/// A dialog whose checks throw.
class BrokenDialog : public GetFloatDialog {
public:
  explicit BrokenDialog(FXWindow* owner) : GetFloatDialog(owner, u"Deposit cash") {}
  bool validate() override { throw Exception(u"broken checks"); }
};

TEST_F(GetFloatDialogTest, AFailureOfOkIsReportedAndTheFormStays) {
  BrokenDialog dialog(&mainWindow());
  whenModal("Deposit cash", [&](FXWindow& form) {
    answer("GetFloatDialog::onOK failed. Exception : broken checks", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
}

class EditFloatDialogTest : public WindowTest {
protected:
  EditFloatDialogTest() {
    m_event.subElement(u"Date").setValue(u"27/2/2026");
    m_event.subElement(u"Value").setValue(u"1264.00");
    m_event.subElement(u"Type").setValue(u"4");
    m_event.subElement(u"Description").setValue(u"DEPOSIT savings");
    XMLCashEvent& fee = m_portfolio.cashEvents().add();
    fee.subElement(u"Date").setValue(u"28/2/2026");
    fee.subElement(u"Value").setValue(u"64.00");
    fee.subElement(u"Type").setValue(u"2");
  }
  XMLSharePortfolio m_portfolio;
  XMLCashEvent& m_event = m_portfolio.cashEvents().add();
};

TEST_F(EditFloatDialogTest, ShowsTheRecordedAmountAndLeavesTheRecordUnchanged) {
  EditFloatDialog dialog(&mainWindow(), u"Edit cash transaction", String(), m_portfolio, m_event);
  EXPECT_EQ(1264.0, dialog.panel()->value());
  EXPECT_EQ(Date(2026, 2, 27), dialog.panel()->date());
  EXPECT_EQ(String(u"DEPOSIT savings"), dialog.panel()->text());
  whenModal("Edit cash transaction", [&](FXWindow& form) {
    type(field(form, "Date"), "04/03/2026");
    answer("You can't specify a date in the future.", "OK");
    press(form, "OK");
    type(field(form, "Date"), "28/02/2026");
    type(field(form, "Amount"), "1,300");
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(1300.0, dialog.panel()->value());
  EXPECT_EQ(Date(2026, 2, 28), dialog.panel()->date());
  EXPECT_EQ(String(u"1264.00"), m_event.subElement(u"Value").value());
}

TEST_F(EditFloatDialogTest, TheCashAfterwardsCountsTheAmountInPlaceOfTheRecordedOne) {
  EditFloatDialog deposit(&mainWindow(), u"Edit cash transaction", String(), m_portfolio, m_event);
  EXPECT_STREQ("1200.00", field(deposit, "Cash afterwards").getText().text());
  deposit.create();
  type(field(deposit, "Amount"), "1,000");
  EXPECT_STREQ("936.00", field(deposit, "Cash afterwards").getText().text());
  m_event.subElement(u"Type").setValue(u"5");
  EditFloatDialog withdrawal(&mainWindow(), u"Edit cash transaction", String(), m_portfolio, m_event);
  EXPECT_STREQ("-1328.00", field(withdrawal, "Cash afterwards").getText().text());
  withdrawal.create();
  type(field(withdrawal, "Amount"), "100");
  EXPECT_STREQ("-164.00", field(withdrawal, "Cash afterwards").getText().text());
}

} // namespace
} // namespace Tallymoor
