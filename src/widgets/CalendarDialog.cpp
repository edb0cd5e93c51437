#include "widgets/CalendarDialog.h"
#include "widgets/DateField.h"
#include "widgets/FXCalendar.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

FXDEFMAP(CalendarDialog)
CalendarDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, CalendarDialog::ID_CALENDAR, CalendarDialog::onMarked),
    FXMAPFUNC(SEL_COMMAND, CalendarDialog::ID_TYPED, CalendarDialog::onTyped),
};

FXIMPLEMENT(CalendarDialog, Dialog, CalendarDialogMap, ARRAYNUMBER(CalendarDialogMap))

CalendarDialog::CalendarDialog(FXWindow* owner, const String& title, const Date& initialDate,
                               const String& heading)
    : Dialog(owner, title, heading), m_date(initialDate) {
  constexpr FXint COLUMNS = 12;
  auto* row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0);
  new FXLabel(row, "Date", nullptr, JUSTIFY_LEFT | LAYOUT_CENTER_Y);
  m_typed = new DateField(row, u"Date", COLUMNS, this, ID_TYPED);
  m_calendar = new FXCalendar(contents(), initialDate, this, ID_CALENDAR);
  showMarked();
  setFirstFocus(m_calendar);
}

bool CalendarDialog::validate() {
  if (!markTyped()) {
    MainWindow::error(m_typed->complaint());
    m_typed->setFocus();
    m_typed->selectAll();
    return false;
  }
  m_date = m_calendar->date();
  return true;
}

void CalendarDialog::showMarked() {
  m_typed->setDate(m_calendar->date());
  m_shown = m_typed->text();
}

/// False when what is typed is no date.
bool CalendarDialog::markTyped() {
  if (m_typed->text() == m_shown)
    return true;
  const auto typed = m_typed->date();
  if (typed)
    m_calendar->setDate(*typed);
  return typed.has_value();
}

long CalendarDialog::onMarked(FXObject*, FXSelector, void*) {
  showMarked();
  return 1;
}

long CalendarDialog::onTyped(FXObject*, FXSelector, void*) {
  markTyped();
  return 1;
}

void chooseDate(FXWindow* owner, DateField& field) {
  CalendarDialog dialog(owner, u"Choose the date", field.date().value_or(Date()));
  if (dialog.execute())
    field.choose(dialog.date());
}

} // namespace Tallymoor
