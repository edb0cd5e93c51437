#include "widgets/CalendarDialog.h"
#include "support/windows/WindowTest.h"
#include "widgets/DateField.h"
#include "widgets/FXCalendar.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

using CalendarDialogTest = WindowTest;

TEST_F(CalendarDialogTest, ReturnsTheMarkedDayAtOk) {
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
  auto* field = new DateField(mainWindow().contentFrame(), u"Date bought", 20);
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

TEST_F(CalendarDialogTest, ADateCanBeTypedAboveTheCalendar) {
  CalendarDialog dialog(&mainWindow(), u"Choose the date", Date(2025, 7, 1));
  EXPECT_EQ(String(u"01/07/2025"), dialog.typed()->text());
  whenModal("Choose the date", [&](FXWindow& form) {
    press(form, "17");
    EXPECT_EQ(String(u"17/07/2025"), dialog.typed()->text());
    type(*dialog.typed(), "1 Nov 23");
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(Date(2023, 11, 1), dialog.date());
}

TEST_F(CalendarDialogTest, TypedTextMovesTheMarkWhenTheFieldLosesTheFocus) {
  CalendarDialog dialog(&mainWindow(), u"Choose the date", Date(2025, 7, 1));
  dialog.create();
  dialog.typed()->setFocus();
  type(*dialog.typed(), "2023-11-01");
  dialog.calendar()->setFocus();
  letEventsPass();
  EXPECT_EQ(Date(2023, 11, 1), dialog.calendar()->date());
  EXPECT_EQ(String(u"01/11/2023"), dialog.typed()->text());
}

TEST_F(CalendarDialogTest, AnInvalidDateIsRefusedWithAnExample) {
  CalendarDialog dialog(&mainWindow(), u"Choose the date", Date(2025, 7, 1));
  whenModal("Choose the date", [&](FXWindow& form) {
    type(*dialog.typed(), "29 Feb 2023");
    answer("Date: \"29 Feb 2023\" is no date.\nA date is written like 31/12/2026 or 31 Dec 2026.", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    EXPECT_EQ(dialog.typed(), dialog.typed()->getParent()->getFocus());
    press(form, "Cancel");
  });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(Date(2025, 7, 1), dialog.date());
}

TEST_F(CalendarDialogTest, WithoutADateInTheFieldItBeginsToday) {
  auto* field = new DateField(mainWindow().contentFrame(), u"Date bought", 20);
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
