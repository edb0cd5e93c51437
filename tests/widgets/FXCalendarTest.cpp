#include "widgets/FXCalendar.h"
#include "support/windows/WindowTest.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

/// Records the dates reported by a calendar.
class DateListener : public FXObject {
public:
  long handle(FXObject*, FXSelector selector, void* data) override {
    if (FXSELTYPE(selector) == SEL_COMMAND && FXSELID(selector) == 7)
      dates.push_back(*static_cast<Date*>(data));
    return 1;
  }
  std::vector<Date> dates;
};

class FXCalendarTest : public WindowTest {
protected:
  FXCalendar& makeCalendar(const Date& date) {
    auto* calendar = new FXCalendar(mainWindow().contentFrame(), date, &m_listener, 7);
    calendar->create();
    mainWindow().recalc();
    letEventsPass();
    return *calendar;
  }
  /// Texts of the 42 day buttons.
  static std::vector<std::string> days(FXCalendar& calendar) {
    std::vector<std::string> texts;
    for (FXButton* button : dayButtons(calendar))
      texts.push_back(button->getText().text());
    return texts;
  }
  static std::vector<FXButton*> dayButtons(FXCalendar& calendar) {
    return findAll<FXButton>(*find<FXMatrix>(calendar));
  }
  static std::string heading(FXCalendar& calendar) { return labels(calendar)[1]; }
  void keyTo(FXCalendar& calendar, FXuint code, FXuint state = 0) {
    calendar.setFocus();
    key(mainWindow(), code, state);
  }
  DateListener m_listener;
};

TEST_F(FXCalendarTest, ShowsTheMonthFromMondayOn) {
  FXCalendar& calendar = makeCalendar(Date(2026, 3, 3)); // A Tuesday; the month begins on a Sunday.
  EXPECT_EQ("March 2026", heading(calendar));
  const std::vector<std::string> shown = days(calendar);
  ASSERT_EQ(42u, shown.size());
  EXPECT_EQ("23", shown[0]);
  EXPECT_EQ("28", shown[5]);
  EXPECT_EQ("1", shown[6]);
  EXPECT_EQ("31", shown[36]);
  EXPECT_EQ("1", shown[37]);
  EXPECT_EQ("5", shown[41]);
}

TEST_F(FXCalendarTest, AMonthThatBeginsOnMondayStartsInTheFirstField) {
  EXPECT_EQ("1", days(makeCalendar(Date(2026, 6, 30)))[0]);
}

TEST_F(FXCalendarTest, MarksTheDayAndGreysTheNeighbours) {
  FXCalendar& calendar = makeCalendar(Date(2026, 3, 3));
  const std::vector<FXButton*> buttons = dayButtons(calendar);
  EXPECT_EQ(app().getSelbackColor(), buttons[8]->getBackColor());
  EXPECT_EQ(app().getBaseColor(), buttons[9]->getBackColor());
  EXPECT_EQ(app().getForeColor(), buttons[9]->getTextColor());
  EXPECT_EQ(app().getShadowColor(), buttons[0]->getTextColor());
  calendar.setDate(Date(2026, 3, 4));
  EXPECT_EQ(app().getBaseColor(), buttons[8]->getBackColor());
  EXPECT_EQ(app().getSelbackColor(), buttons[9]->getBackColor());
}

TEST_F(FXCalendarTest, PressingADaySelectsItAndNotifiesTheTarget) {
  FXCalendar& calendar = makeCalendar(Date(2026, 3, 3));
  press(*dayButtons(calendar)[36]);
  EXPECT_EQ(Date(2026, 3, 31), calendar.date());
  press(*dayButtons(calendar)[41]); // The fifth of the next month.
  EXPECT_EQ(Date(2026, 4, 5), calendar.date());
  EXPECT_EQ("April 2026", heading(calendar));
  EXPECT_EQ((std::vector<Date>{Date(2026, 3, 31), Date(2026, 4, 5)}), m_listener.dates);
}

TEST_F(FXCalendarTest, SettingTheDateSendsNoMessage) {
  FXCalendar& calendar = makeCalendar(Date(2026, 3, 3));
  calendar.setDate(Date(2024, 2, 29));
  int year = 0, month = 0, day = 0;
  calendar.getDate(year, month, day);
  EXPECT_EQ(2024, year);
  EXPECT_EQ(2, month);
  EXPECT_EQ(29, day);
  EXPECT_EQ("February 2024", heading(calendar));
  EXPECT_TRUE(m_listener.dates.empty());
}

TEST_F(FXCalendarTest, ArrowsGoByMonthsAndYears) {
  FXCalendar& calendar = makeCalendar(Date(2026, 3, 31));
  const std::vector<FXArrowButton*> arrows = findAll<FXArrowButton>(calendar);
  ASSERT_EQ(2u, arrows.size());
  press(*arrows[0]);
  EXPECT_EQ(Date(2026, 2, 28), calendar.date());
  press(*arrows[1]);
  EXPECT_EQ(Date(2026, 3, 28), calendar.date());
  press(calendar, "<<");
  EXPECT_EQ(Date(2025, 3, 28), calendar.date());
  press(calendar, ">>");
  EXPECT_EQ(Date(2026, 3, 28), calendar.date());
}

TEST_F(FXCalendarTest, YearsFromALeapDayEndInFebruary) {
  FXCalendar& calendar = makeCalendar(Date(2024, 2, 29));
  press(calendar, ">>");
  EXPECT_EQ(Date(2025, 2, 28), calendar.date());
}

TEST_F(FXCalendarTest, KeysWalkTheDays) {
  FXCalendar& calendar = makeCalendar(Date(2026, 3, 1));
  keyTo(calendar, KEY_Left);
  EXPECT_EQ(Date(2026, 2, 28), calendar.date());
  keyTo(calendar, KEY_Right);
  EXPECT_EQ(Date(2026, 3, 1), calendar.date());
  keyTo(calendar, KEY_Down);
  EXPECT_EQ(Date(2026, 3, 8), calendar.date());
  keyTo(calendar, KEY_Up);
  EXPECT_EQ(Date(2026, 3, 1), calendar.date());
  keyTo(calendar, KEY_Page_Down);
  EXPECT_EQ(Date(2026, 4, 1), calendar.date());
  keyTo(calendar, KEY_Page_Up);
  EXPECT_EQ(Date(2026, 3, 1), calendar.date());
  keyTo(calendar, KEY_Page_Up, SHIFTMASK);
  EXPECT_EQ(Date(2025, 3, 1), calendar.date());
  keyTo(calendar, KEY_Page_Down, CONTROLMASK);
  EXPECT_EQ(Date(2026, 3, 1), calendar.date());
}

TEST_F(FXCalendarTest, StaysWithinTheYearsThatExist) {
  FXCalendar& calendar = makeCalendar(Date(1, 1, 1));
  press(calendar, "<<");
  keyTo(calendar, KEY_Left);
  EXPECT_EQ(Date(1, 1, 1), calendar.date());
  EXPECT_EQ("1", days(calendar)[0]);
  calendar.setDate(Date(9999, 12, 31));
  press(calendar, ">>");
  keyTo(calendar, KEY_Right);
  EXPECT_EQ(Date(9999, 12, 31), calendar.date());
  const std::vector<FXButton*> buttons = dayButtons(calendar); // 9999-12-01 is a Wednesday.
  EXPECT_STREQ("31", buttons[32]->getText().text());
  EXPECT_STREQ("", buttons[33]->getText().text());
  EXPECT_FALSE(buttons[33]->isEnabled());
  calendar.setDate(Date(2026, 3, 3));
  EXPECT_TRUE(buttons[33]->isEnabled());
}

TEST_F(FXCalendarTest, IsOneStopOfTheTabKeyBesideItsArrows) {
  FXCalendar& calendar = makeCalendar(Date(2026, 3, 3));
  EXPECT_TRUE(calendar.canFocus());
  for (FXButton* button : dayButtons(calendar))
    EXPECT_FALSE(button->canFocus());
}

} // namespace
} // namespace Tallymoor
