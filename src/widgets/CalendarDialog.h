#pragma once
#include "foundation/Date.h"
#include "widgets/Dialog.h"

namespace Tallymoor {

class DateField;
class FXCalendar;

/// Asks for a date with a month's calendar, above which it can be typed, too. Its usual title is "Choose the
/// date".
class CalendarDialog : public Dialog {
  FXDECLARE(CalendarDialog)
public:
  enum { ID_CALENDAR = Dialog::ID_LAST, ID_TYPED, ID_LAST };

  CalendarDialog(FXWindow* owner, const String& title, const Date& initialDate,
                 const String& heading = String());

  /// The day that was marked at the moment of OK; the initial date before.
  const Date& date() const { return m_date; }
  /// Refuses a typed text that is no date.
  bool validate() override;
  FXCalendar* calendar() const { return m_calendar; }
  DateField* typed() const { return m_typed; }

  /// A day was marked: the field shows it.
  long onMarked(FXObject*, FXSelector, void*);
  /// The keyboard left the field: the calendar goes to its day.
  long onTyped(FXObject*, FXSelector, void*);

protected:
  CalendarDialog() {}

private:
  void showMarked();
  bool markTyped();

  String m_shown; ///< what the field says unless the user has typed
  DateField* m_typed = nullptr;
  FXCalendar* m_calendar = nullptr;
  Date m_date;
};

/// The button beside a date field: asks for a date with the title "Choose the date", beginning at the one in
/// the field (at today when the field holds none), and puts the answer into the field in the user's local
/// form, of which the field's target is told.
void chooseDate(FXWindow* owner, DateField& field);

} // namespace Tallymoor
