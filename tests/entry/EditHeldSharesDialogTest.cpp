#include "entry/EditHeldSharesDialog.h"
#include "entry/BuySharesPanel.h"
#include "support/windows/WindowTest.h"
#include "xml/PortfolioRecords.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

class EditHeldSharesDialogTest : public WindowTest {
protected:
  EditHeldSharesDialogTest() {
    m_event.subElement(u"BuyDate").setValue(u"3/7/2025");
    m_event.subElement(u"NumHeld").setValue(u"100.00");
    m_event.subElement(u"BuyPrice").setValue(u"12.3400");
    m_event.subElement(u"Brokerage").setValue(u"50.00");
    m_event.subElement(u"Comment").setValue(u"cheap & sound");
  }
  XMLBuyEvent m_event;
};

TEST_F(EditHeldSharesDialogTest, ShowsThePurchase) {
  EditHeldSharesDialog dialog(&mainWindow(), u"ABC.AX", m_event);
  const std::string caption =
      "Edit share purchase for ABC.AX on " + Date(2025, 7, 3).toString(DATE_DISPLAY_LOCAL).toUTF8();
  EXPECT_EQ(caption, title(dialog));
  EXPECT_EQ(String(u"ABC.AX"), dialog.panel()->code());
  EXPECT_EQ(Date(2025, 7, 3), dialog.panel()->date());
  EXPECT_EQ(100.0, dialog.panel()->number());
  EXPECT_EQ(12.34, dialog.panel()->price());
  EXPECT_EQ(50.0, dialog.panel()->brokerage());
  EXPECT_EQ(String(u"cheap & sound"), dialog.panel()->comments());
}

TEST_F(EditHeldSharesDialogTest, APartOfAPurchaseKeepsItsDigits) {
  m_event.subElement(u"NumHeld").setValue(u"66.666667");
  EditHeldSharesDialog dialog(&mainWindow(), u"ABC.AX", m_event);
  EXPECT_EQ("66.666667", std::string(field(dialog, "Number bought").getText().text()));
  EXPECT_EQ(66.666667, dialog.panel()->number());
}

TEST_F(EditHeldSharesDialogTest, TheCodeCannotBeChanged) {
  EditHeldSharesDialog dialog(&mainWindow(), u"ABC.AX", m_event);
  EXPECT_FALSE(field(dialog, "Stock code").isEditable());
  EXPECT_FALSE(button(dialog, "Search for stock code").shown());
}

TEST_F(EditHeldSharesDialogTest, AllChecksApply) {
  EditHeldSharesDialog dialog(&mainWindow(), u"ABC.AX", m_event);
  whenModal("Edit share purchase for ABC.AX on 03/07/2025", [&](FXWindow& form) {
    type(field(form, "Number bought"), "0");
    answer("You must select the number of shares purchased.", "OK");
    press(form, "OK");
    type(field(form, "Number bought"), "120");
    type(field(form, "Date bought"), "04/03/2026");
    answer("You can't specify a buy date in the future.", "OK");
    press(form, "OK");
    type(field(form, "Date bought"), "04/07/2025");
    answer("You have not checked the stock code by searching for the company.\n"
           "Are you sure you want to continue with this stock code?",
           "Yes");
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(120.0, dialog.panel()->number());
  EXPECT_EQ(Date(2025, 7, 4), dialog.panel()->date());
}

TEST_F(EditHeldSharesDialogTest, TheRecordItselfIsOnlyRead) {
  EditHeldSharesDialog dialog(&mainWindow(), u"ABC.AX", m_event);
  whenModal("Edit share purchase for ABC.AX on 03/07/2025", [&](FXWindow& form) {
    type(field(form, "Number bought"), "120");
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(String(u"100.00"), m_event.subElement(u"NumHeld").value());
}

} // namespace
} // namespace Tallymoor
