#include "entry/ReceiveDividendsDialog.h"
#include "PortfolioFormTest.h"
#include "entry/ReceiveDividendsPanel.h"

namespace Tallymoor {
namespace {

using ReceiveDividendsDialogTest = PortfolioFormTest;

TEST_F(ReceiveDividendsDialogTest, TakesADividendFromTheKeyboardAlone) {
  ReceiveDividendsDialog dialog(&mainWindow(), user());
  whenModal("Receive a dividend", [&](FXWindow& form) {
    EXPECT_EQ(&field(form, "Stock Code"), focused(form));
    key(form, KEY_Down);
    key(form, KEY_Down);
    type(field(form, "Dividend Rate"), "0.12");
    field(form, "Percent Franked").setFocus();
    key(form, KEY_Return);
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(u"XYZ.AX"), dialog.panel()->code());
  EXPECT_DOUBLE_EQ(6.0, dialog.panel()->value());
  EXPECT_EQ(100, dialog.panel()->percentFranked());
}

TEST_F(ReceiveDividendsDialogTest, EnterAcceptsFromEveryKindOfField) {
  for (const char* label : {"Stock Code", "Dividend Rate", "Foreign Div", "Paid in cash"}) {
    ReceiveDividendsDialog dialog(&mainWindow(), user(), u"ABC.AX");
    whenModal("Receive a dividend", [&](FXWindow& form) {
      type(field(form, "Dividend Rate"), "0.12");
      FXWindow* check = findButton(form, label);
      (check ? check : &field(form, label))->setFocus();
      key(form, KEY_Return);
    });
    EXPECT_EQ(1u, dialog.execute()) << label;
  }
}

TEST_F(ReceiveDividendsDialogTest, EscapeCancelsWithoutChecks) {
  ReceiveDividendsDialog dialog(&mainWindow(), user());
  whenModal("Receive a dividend", [&](FXWindow& form) { key(form, KEY_Escape); });
  EXPECT_EQ(0u, dialog.execute());
}

TEST_F(ReceiveDividendsDialogTest, TabGoesDownTheForm) {
  ReceiveDividendsDialog dialog(&mainWindow(), user(), u"ABC.AX");
  whenModal("Receive a dividend", [&](FXWindow& form) {
    field(form, "Stock Code").setFocus();
    expectTabGoesDown(form);
    key(form, KEY_Escape);
  });
  dialog.execute();
}

} // namespace
} // namespace Tallymoor
