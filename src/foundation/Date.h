#pragma once
#include "foundation/FXJulianDate.h"
#include "foundation/String.h"
#include <compare>

namespace Tallymoor {

/// Text formats of a date. The value 0 is used in files. The value 4 is unused and rejected.
enum DateDisplay {
  DATE_DISPLAY_DMY = 0,  ///< "3/3/2006", used for every date in documents.
  DATE_DISPLAY_DMY2 = 1, ///< Same text as value 0.
  DATE_DISPLAY_MDY = 2,
  DATE_DISPLAY_YMD = 3,
  DATE_DISPLAY_MIDDATE1 = 5, ///< "3-Mar-06", used in prices from web pages.
  DATE_DISPLAY_LOCAL = 6     ///< The user's short form, used for display.
};

/// A calendar day, and the program-wide view date. While the user views a past day, Date() is that day. Set
/// the view date on the GUI thread; any thread may read it.
class Date : public FXJulianDate {
public:
  /// Today, or the view date if one is set.
  Date();
  explicit Date(std::uint32_t julianDay) : FXJulianDate(julianDay) {}
  Date(int year, int month, int day) : FXJulianDate(year, month, day) {}
  /// Reads the text by fromString, with the same exceptions.
  Date(const String& text, int format);

  /// Sets the view date.
  static void setFixedDate(const Date& date);
  /// Makes Date() return the real current day again.
  static void clearFixedDate();
  /// True if a view date is set.
  static bool hasFixedDate();
  /// The current day by the system clock, even if a view date is set.
  static Date realToday();

  /// Throws Exception "Date::toString - unknown format".
  String toString(int format) const;
  /// The text of Date().
  static String todayToString(int format);
  /// Throws Exception and leaves the date unchanged if the text is not in the format.
  void fromString(const String& text, int format);

  /// Adds days; a negative count subtracts them.
  Date plusDays(int days) const;
  /// Adds months. If the result's month is too short, gives its last day.
  Date plusMonths(int months) const;
  Date lastDayOfMonth() const;

  /// The Friday of the week (Monday to Sunday) before this date's week. Weekly gains start there.
  Date fridayBeforeLastWeekend() const;
  /// The last Friday strictly before the date.
  Date lastFriday() const;
  bool isWeekend() const;

  friend bool operator==(const Date& a, const Date& b) { return a.m_julian == b.m_julian; }
  friend std::strong_ordering operator<=>(const Date& a, const Date& b) { return a.m_julian <=> b.m_julian; }

private:
  static std::atomic<std::uint32_t> s_fixedDate; ///< 0 if not set.
};

} // namespace Tallymoor
