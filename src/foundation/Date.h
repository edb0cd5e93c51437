#pragma once
#include "foundation/FXJulianDate.h"
#include "foundation/String.h"
#include <compare>

namespace Tallymoor {

/// Text forms of a date. Files depend on the meaning of 0; value 4 has no form and is refused.
enum DateDisplay {
  DATE_DISPLAY_DMY = 0,  ///< "3/3/2006", every date inside the documents
  DATE_DISPLAY_DMY2 = 1, ///< the same text as value 0
  DATE_DISPLAY_MDY = 2,
  DATE_DISPLAY_YMD = 3,
  DATE_DISPLAY_MIDDATE1 = 5, ///< "3-Mar-06", prices read from web pages
  DATE_DISPLAY_LOCAL = 6     ///< the user's short form, everything that is shown
};

/// A calendar day, and the view date that the whole program feels: while the user looks at a past day, every
/// default-constructed Date is that day. The view date is set on the GUI thread and read on any.
class Date : public FXJulianDate {
public:
  /// Today, or the view date while one is set.
  Date();
  explicit Date(std::uint32_t julianDay) : FXJulianDate(julianDay) {}
  Date(int year, int month, int day) : FXJulianDate(year, month, day) {}
  /// As fromString reads it, and throws.
  Date(const String& text, int format);

  /// Makes this day the view date.
  static void setFixedDate(const Date& date);
  /// Today by the clock is what a Date is made as again.
  static void clearFixedDate();
  /// True while a view date is set.
  static bool hasFixedDate();
  /// Today by the clock, whatever the view date.
  static Date realToday();

  /// Throws Exception "Date::toString - unknown format".
  String toString(int format) const;
  /// The text of Date().
  static String todayToString(int format);
  /// Throws Exception and leaves the date as it was when the text is not in the format.
  void fromString(const String& text, int format);

  /// The date so many days later (earlier for a negative count).
  Date plusDays(int days) const;
  /// So many months later, on the month's last day where it has no such day.
  Date plusMonths(int months) const;
  Date lastDayOfMonth() const;

  /// The Friday of the Monday-to-Sunday week before the date's own: the base of every weekly gain.
  Date fridayBeforeLastWeekend() const;
  /// The last Friday strictly before the date.
  Date lastFriday() const;
  bool isWeekend() const;

  friend bool operator==(const Date& a, const Date& b) { return a.m_julian == b.m_julian; }
  friend std::strong_ordering operator<=>(const Date& a, const Date& b) { return a.m_julian <=> b.m_julian; }

private:
  static std::atomic<std::uint32_t> s_fixedDate; ///< 0 while none is set
};

} // namespace Tallymoor
