#include "widgets/CalendarDialog.h"
#include "foundation/Exception.h"
#include "widgets/FXCalendar.h"
#include "widgets/FormTextField.h"

namespace Tallymoor {

FXIMPLEMENT(CalendarDialog, Dialog, nullptr, 0)

CalendarDialog::CalendarDialog(FXWindow* owner, const String& title, const Date& initialDate,
                               const String& heading)
    : Dialog(owner, title, heading), m_calendar(new FXCalendar(contents(), initialDate)),
      m_date(initialDate) {
  setFirstFocus(m_calendar);
}

bool CalendarDialog::validate() {
  int year = 0, month = 0, day = 0;
  m_calendar->getDate(year, month, day);
  m_date = Date(year, month, day);
  return true;
}

namespace {

Date dateIn(const FormTextField& field) {
  try {
    return Date(field.text(), DATE_DISPLAY_LOCAL);
  } catch (const Exception&) {
    return Date();
  }
}

} // namespace

void chooseDate(FXWindow* owner, FormTextField& field) {
  CalendarDialog dialog(owner, u"Choose the date", dateIn(field));
  if (dialog.execute())
    field.setText(dialog.date().toString(DATE_DISPLAY_LOCAL));
}

} // namespace Tallymoor
