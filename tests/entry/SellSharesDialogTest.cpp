#include "entry/SellSharesDialog.h"
#include "PortfolioFormTest.h"
#include "entry/SellSharesPanel.h"

namespace Tallymoor {
namespace {

using SellSharesDialogTest = PortfolioFormTest;

TEST_F(SellSharesDialogTest, TakesASaleFromTheKeyboardAlone) {
  SellSharesDialog dialog(&mainWindow(), user());
  whenModal("Sell Shares", [&](FXWindow& form) {
    EXPECT_EQ(&field(form, "Stock code"), focused(form));
    key(form, KEY_Down);
    EXPECT_STREQ("ABC.AX", field(form, "Stock code").getText().text());
    type(field(form, "Date sold"), "24/02/2026");
    answer("No capital record for the sell date. Please refesh the capital record", "OK");
    key(form, KEY_Return);
    EXPECT_EQ(&field(form, "Date sold"), focused(form));
    type(field(form, "Date sold"), "27/02/2026");
    type(field(form, "Number sold"), "40");
    field(form, "Stock code").setFocus();
    key(form, KEY_Return); // The list passes it on.
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(u"ABC.AX"), dialog.panel()->code());
  EXPECT_EQ(40.0, dialog.panel()->number());
  EXPECT_EQ(2.5, dialog.panel()->price());
  EXPECT_EQ(Date(2026, 2, 27), dialog.panel()->date());
}

TEST_F(SellSharesDialogTest, EscapeCancelsWithoutChecks) {
  SellSharesDialog dialog(&mainWindow(), user());
  whenModal("Sell Shares", [&](FXWindow& form) { key(form, KEY_Escape); });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_TRUE(boxes().empty());
}

TEST_F(SellSharesDialogTest, ACodePassedInIsChosenAndItsNumberHasTheFocus) {
  SellSharesDialog dialog(&mainWindow(), user(), u"XYZ.AX");
  whenModal("Sell Shares", [&](FXWindow& form) {
    EXPECT_EQ(&field(form, "Number sold"), focused(form));
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(50.0, dialog.panel()->number());
}

TEST_F(SellSharesDialogTest, TabGoesDownTheFormAndOutOfTheComments) {
  SellSharesDialog dialog(&mainWindow(), user());
  whenModal("Sell Shares", [&](FXWindow& form) {
    expectTabGoesDown(form);
    EXPECT_EQ(0, find<FXText>(form)->getLength());
    key(form, KEY_Escape);
  });
  dialog.execute();
}

} // namespace
} // namespace Tallymoor
