#pragma once
#include "foundation/Date.h"
#include "widgets/Dialog.h"

namespace Tallymoor {

class FXCalendar;
class FormTextField;

/// Asks for a date with a month's calendar. Its usual title is "Choose the date".
class CalendarDialog : public Dialog {
  FXDECLARE(CalendarDialog)
public:
  CalendarDialog(FXWindow* owner, const String& title, const Date& initialDate,
                 const String& heading = String());

  /// The day that was marked at the moment of OK; the initial date before.
  const Date& date() const { return m_date; }
  bool validate() override;
  FXCalendar* calendar() const { return m_calendar; }

protected:
  CalendarDialog() {}

private:
  FXCalendar* m_calendar = nullptr;
  Date m_date;
};

/// The button beside a date field: asks for a date with the title "Choose the date", beginning at the one in
/// the field (at today when the field holds none), and puts the answer into the field in the user's local
/// form.
void chooseDate(FXWindow* owner, FormTextField& field);

} // namespace Tallymoor
