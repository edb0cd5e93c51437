#include "widgets/CalendarDialog.h"
#include "support/windows/WindowTest.h"
#include "widgets/FXCalendar.h"
#include "widgets/FormTextField.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

using CalendarDialogTest = WindowTest;

TEST_F(CalendarDialogTest, GivesTheDayThatIsMarkedAtOk) {
  CalendarDialog dialog(&mainWindow(), u"Choose the date", Date(2025, 7, 1));
  EXPECT_EQ(Date(2025, 7, 1), dialog.calendar()->date());
  whenModal("Choose the date", [&](FXWindow& form) {
    press(form, "17");
    EXPECT_EQ(Date(2025, 7, 1), dialog.date());
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(Date(2025, 7, 17), dialog.date());
}

TEST_F(CalendarDialogTest, CancelKeepsTheInitialDate) {
  CalendarDialog dialog(&mainWindow(), u"Choose the date", Date(2025, 7, 1));
  whenModal("Choose the date", [&](FXWindow& form) {
    press(form, "17");
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(Date(2025, 7, 1), dialog.date());
}

TEST_F(CalendarDialogTest, KeysWorkFromTheStartAndEnterAccepts) {
  CalendarDialog dialog(&mainWindow(), u"Choose the date", Date(2025, 7, 1));
  whenModal("Choose the date", [&](FXWindow& form) {
    key(form, KEY_Down);
    key(form, KEY_Return);
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(Date(2025, 7, 8), dialog.date());
}

TEST_F(CalendarDialogTest, TheHeadingIsTheTitleUnlessGiven) {
  CalendarDialog plain(&mainWindow(), u"Choose the date", Date(2025, 7, 1));
  EXPECT_EQ("Choose the date", labels(plain).front());
  CalendarDialog headed(&mainWindow(), u"Start", Date(2025, 7, 1), u"First day of the portfolio");
  EXPECT_EQ("First day of the portfolio", labels(headed).front());
}

TEST_F(CalendarDialogTest, TheButtonBesideAFieldBeginsAtItsDateAndFillsIt) {
  auto* field = new FormTextField(mainWindow().contentFrame(), 20);
  field->setText(u"16/07/2025");
  whenModal("Choose the date", [&](FXWindow& form) {
    EXPECT_EQ(Date(2025, 7, 16), find<FXCalendar>(form)->date());
    press(form, "18");
    press(form, "OK");
  });
  chooseDate(&mainWindow(), *field);
  EXPECT_EQ(Date(2025, 7, 18).toString(DATE_DISPLAY_LOCAL), field->text());
  const String before = field->text();
  whenModal("Choose the date", [&](FXWindow& form) {
    press(form, "20");
    press(form, "Cancel");
  });
  chooseDate(&mainWindow(), *field);
  EXPECT_EQ(before, field->text());
}

TEST_F(CalendarDialogTest, WithoutADateInTheFieldItBeginsToday) {
  auto* field = new FormTextField(mainWindow().contentFrame(), 20);
  field->setText(u"some day");
  whenModal("Choose the date", [&](FXWindow& form) {
    EXPECT_EQ(Date(2026, 3, 3), find<FXCalendar>(form)->date());
    press(form, "Cancel");
  });
  chooseDate(&mainWindow(), *field);
  EXPECT_EQ(String(u"some day"), field->text());
}

} // namespace
} // namespace Tallymoor
