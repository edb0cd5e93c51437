#include "widgets/FXCalendar.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(FXCalendar)
FXCalendarMap[] = {
    FXMAPFUNCS(SEL_COMMAND, FXCalendar::ID_PREVIOUS_YEAR, FXCalendar::ID_NEXT_YEAR, FXCalendar::onMove),
    FXMAPFUNCS(SEL_COMMAND, FXCalendar::ID_DAY, FXCalendar::ID_LAST_DAY, FXCalendar::onDay),
    FXMAPFUNC(SEL_KEYPRESS, 0, FXCalendar::onKeyPress),
};

FXIMPLEMENT(FXCalendar, FXVerticalFrame, FXCalendarMap, ARRAYNUMBER(FXCalendarMap))

namespace {

constexpr int DAYS_IN_WEEK = 7;
constexpr int MONTHS_IN_YEAR = 12;

/// Keys walk the calendar as a whole; with 42 stops of its own the tab key would hardly leave it.
class DayButton : public FXButton {
public:
  DayButton(FXComposite* parent, FXObject* target, FXSelector selector, FXuint options)
      : FXButton(parent, FXString::null, nullptr, target, selector, options, 0, 0, 0, 0, 8, 8, 4, 4) {}
  bool canFocus() const override { return false; }
};

/// Months that a heading arrow goes, by its identifier.
int monthsOf(FXuint id) {
  switch (id) {
  case FXCalendar::ID_PREVIOUS_YEAR:
    return -MONTHS_IN_YEAR;
  case FXCalendar::ID_PREVIOUS_MONTH:
    return -1;
  case FXCalendar::ID_NEXT_MONTH:
    return 1;
  default:
    return MONTHS_IN_YEAR;
  }
}

Date clamped(const Date& date) {
  return std::clamp(date, Date(1, 1, 1), Date(9999, 12, 31));
}

/// The day of the first button: the Monday at or before the first of the month.
Date firstShown(const Date& date) {
  const Date first(date.year(), date.month(), 1);
  return first.plusDays(-((first.dayOfWeek() + DAYS_IN_WEEK - 1) % DAYS_IN_WEEK));
}

} // namespace

FXCalendar::FXCalendar(FXComposite* parent, const Date& date, FXObject* target, FXSelector selector)
    : FXVerticalFrame(parent, FRAME_SUNKEN | FRAME_THICK, 0, 0, 0, 0, 6, 6, 6, 6, 4, 4),
      m_date(clamped(date)) {
  setTarget(target);
  setSelector(selector);
  enable();
  buildHeading();
  buildDays();
  showMonth();
}

void FXCalendar::buildHeading() {
  constexpr FXuint ARROW = FRAME_RAISED | FRAME_THICK;
  auto* heading = new FXHorizontalFrame(this, LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0);
  auto* previousYear =
      new FXButton(heading, "<<", nullptr, this, ID_PREVIOUS_YEAR, BUTTON_NORMAL | LAYOUT_FILL_Y);
  previousYear->setTipText("Previous year");
  auto* previous = new FXArrowButton(heading, this, ID_PREVIOUS_MONTH, ARROW | ARROW_LEFT | LAYOUT_FILL_Y);
  previous->setTipText("Previous month");
  m_title = new FXLabel(heading, FXString::null, nullptr, JUSTIFY_CENTER_X | LAYOUT_FILL_X | LAYOUT_CENTER_Y);
  auto* next = new FXArrowButton(heading, this, ID_NEXT_MONTH, ARROW | ARROW_RIGHT | LAYOUT_FILL_Y);
  next->setTipText("Next month");
  auto* nextYear = new FXButton(heading, ">>", nullptr, this, ID_NEXT_YEAR, BUTTON_NORMAL | LAYOUT_FILL_Y);
  nextYear->setTipText("Next year");
}

void FXCalendar::buildDays() {
  constexpr FXuint UNIFORM =
      MATRIX_BY_COLUMNS | PACK_UNIFORM_WIDTH | PACK_UNIFORM_HEIGHT | LAYOUT_FILL_X | LAYOUT_FILL_Y;
  constexpr FXuint CELL = LAYOUT_FILL_X | LAYOUT_FILL_COLUMN;
  auto* days = new FXMatrix(this, DAYS_IN_WEEK, UNIFORM, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1);
  for (const char* name : {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"})
    new FXLabel(days, name, nullptr, JUSTIFY_CENTER_X | CELL);
  for (std::size_t i = 0; i < m_days.size(); ++i) {
    m_days[i] = new DayButton(days, this, static_cast<FXSelector>(ID_DAY + i),
                              FRAME_RAISED | JUSTIFY_CENTER_X | CELL | LAYOUT_FILL_Y | LAYOUT_FILL_ROW);
  }
}

void FXCalendar::setDate(const Date& date) {
  m_date = clamped(date);
  showMonth();
}

void FXCalendar::getDate(int& year, int& month, int& day) const {
  year = m_date.year();
  month = m_date.month();
  day = m_date.day();
}

void FXCalendar::showMonth() {
  const FXColor markColour = getApp()->getSelbackColor();
  const FXColor markText = getApp()->getSelforeColor();
  const FXColor greyed = getApp()->getShadowColor();
  m_title->setText(FXString(FXJulianDate::monthName(m_date.month())) + " " + FXStringVal(m_date.year()));
  const Date first = firstShown(m_date);
  for (std::size_t i = 0; i < m_days.size(); ++i) {
    const Date day = first.plusDays(static_cast<int>(i));
    FXButton* button = m_days[i];
    const bool ofMonth = day.month() == m_date.month();
    // Past the calendar's last day there is nothing to show.
    const bool exists = day.daysSince(first) == static_cast<int>(i);
    button->setText(exists ? FXStringVal(day.day()) : FXString::null);
    if (exists)
      button->enable();
    else
      button->disable();
    const bool marked = exists && day == m_date;
    button->setBackColor(marked ? markColour : getApp()->getBaseColor());
    button->setTextColor(marked ? markText : ofMonth ? getApp()->getForeColor() : greyed);
  }
}

void FXCalendar::chooseByUser(const Date& date) {
  setDate(date);
  if (target)
    target->tryHandle(this, FXSEL(SEL_COMMAND, message), &m_date);
}

long FXCalendar::onMove(FXObject*, FXSelector selector, void*) {
  chooseByUser(m_date.plusMonths(monthsOf(FXSELID(selector))));
  return 1;
}

long FXCalendar::onDay(FXObject*, FXSelector selector, void*) {
  chooseByUser(firstShown(m_date).plusDays(static_cast<int>(FXSELID(selector) - ID_DAY)));
  setFocus();
  return 1;
}

long FXCalendar::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const auto* event = static_cast<FXEvent*>(data);
  const int months = event->state & (SHIFTMASK | CONTROLMASK) ? MONTHS_IN_YEAR : 1;
  switch (event->code) {
  case KEY_Left:
    chooseByUser(m_date.plusDays(-1));
    return 1;
  case KEY_Right:
    chooseByUser(m_date.plusDays(1));
    return 1;
  case KEY_Up:
    chooseByUser(m_date.plusDays(-DAYS_IN_WEEK));
    return 1;
  case KEY_Down:
    chooseByUser(m_date.plusDays(DAYS_IN_WEEK));
    return 1;
  case KEY_Page_Up:
    chooseByUser(m_date.plusMonths(-months));
    return 1;
  case KEY_Page_Down:
    chooseByUser(m_date.plusMonths(months));
    return 1;
  default:
    return FXVerticalFrame::onKeyPress(sender, selector, data);
  }
}

bool FXCalendar::canFocus() const {
  return true;
}

} // namespace Tallymoor
