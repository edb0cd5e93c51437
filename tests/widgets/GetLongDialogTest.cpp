#include "widgets/GetLongDialog.h"
#include "support/windows/WindowTest.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

class GetLongDialogTest : public WindowTest {
protected:
  /// The dialog's value after this text was typed.
  std::int32_t valueOf(const std::string& typed) {
    GetLongDialog dialog(&mainWindow(), u"Ratio", u"How many?", 1, 100, 5);
    whenModal("Ratio", [&](FXWindow& form) {
      type(*find<FXTextField>(form), typed);
      press(form, "OK");
    });
    EXPECT_EQ(1u, dialog.execute());
    return dialog.value();
  }
};

TEST_F(GetLongDialogTest, BeginsWithTheInitialValueBehindItsLabel) {
  GetLongDialog dialog(&mainWindow(), u"Ratio", u"How many?", 1, 100, 5);
  whenModal("Ratio", [&](FXWindow& form) {
    EXPECT_TRUE(shows(form, "How many?"));
    EXPECT_STREQ("5", field(form, "Value: ").getText().text());
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(5, dialog.value());
}

TEST_F(GetLongDialogTest, GivesTheTypedNumber) {
  EXPECT_EQ(42, valueOf("42"));
}

TEST_F(GetLongDialogTest, KeepsWithinTheLimits) {
  EXPECT_EQ(100, valueOf("1000"));
  EXPECT_EQ(1, valueOf("0"));
  EXPECT_EQ(1, valueOf("-7"));
  EXPECT_EQ(100, valueOf("99999999999999"));
}

TEST_F(GetLongDialogTest, AnInitialValueOutsideTheLimitsIsBroughtInside) {
  EXPECT_EQ(10, GetLongDialog(&mainWindow(), u"T", u"H", 1, 10, 50).value());
  EXPECT_EQ(1, GetLongDialog(&mainWindow(), u"T", u"H", 1, 10, -50).value());
}

TEST_F(GetLongDialogTest, NegativeNumbersAreNumbers) {
  GetLongDialog dialog(&mainWindow(), u"Ratio", u"How many?", -10, 10, 0);
  whenModal("Ratio", [&](FXWindow& form) {
    type(*find<FXTextField>(form), "-3");
    press(form, "OK");
  });
  dialog.execute();
  EXPECT_EQ(-3, dialog.value());
}

TEST_F(GetLongDialogTest, AnEmptyFieldIsRefused) {
  GetLongDialog dialog(&mainWindow(), u"Ratio", u"How many?", 1, 100, 5);
  whenModal("Ratio", [&](FXWindow& form) {
    type(*find<FXTextField>(form), "");
    answer(" You must enter a value.", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    press(form, "Cancel");
  });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(5, dialog.value());
}

TEST_F(GetLongDialogTest, EnterInTheFieldAccepts) {
  GetLongDialog dialog(&mainWindow(), u"Ratio", u"How many?", 1, 100, 5);
  whenModal("Ratio", [&](FXWindow& form) {
    auto* field = find<FXTextField>(form);
    EXPECT_EQ(field, field->getParent()->getFocus());
    type(*field, "7");
    key(form, KEY_Return);
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(7, dialog.value());
}

TEST_F(GetLongDialogTest, EnterOnCancelCancels) {
  GetLongDialog dialog(&mainWindow(), u"Ratio", u"How many?", 1, 100, 5);
  whenModal("Ratio", [&](FXWindow& form) {
    dialog.cancelButton()->setFocus();
    key(form, KEY_Return);
  });
  EXPECT_EQ(0u, dialog.execute());
}

TEST_F(GetLongDialogTest, TheArrowsCountWithinTheLimits) {
  GetLongDialog dialog(&mainWindow(), u"Ratio", u"How many?", 1, 6, 5);
  whenModal("Ratio", [&](FXWindow& form) {
    auto* spinner = find<FXSpinner>(form);
    for (int i = 0; i < 3; ++i)
      spinner->handle(&app(), FXSEL(SEL_COMMAND, FXSpinner::ID_INCREMENT), nullptr);
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(6, dialog.value());
}

} // namespace
} // namespace Tallymoor
