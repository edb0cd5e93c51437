#pragma once
#include <atomic>
#include <cstdint>

namespace Tallymoor {

/// The current local day. Tests can replace it.
class Clock {
public:
  /// Julian day number of the current local day.
  static std::uint32_t today();
  /// For tests: sets the current day. 0 restores the system clock. Thread-safe.
  static void setToday(std::uint32_t julianDay);

private:
  static std::atomic<std::uint32_t> s_today;
};

/// A Julian day number in the proleptic Gregorian calendar, years 1 to 9999.
class FXJulianDate {
public:
  /// The current day of Clock.
  FXJulianDate();
  explicit FXJulianDate(std::uint32_t julianDay) : m_julian(julianDay) {}
  FXJulianDate(int year, int month, int day);
  FXJulianDate(const FXJulianDate&) = default;
  FXJulianDate& operator=(const FXJulianDate&) = default;
  virtual ~FXJulianDate() = default;

  /// Values out of range carry over: 31 April becomes 1 May.
  void setDate(int year, int month, int day);
  /// A negative count subtracts. The result is clamped to the calendar's range.
  void addDays(int days);
  /// Keeps the day of the month, or takes the last day of a shorter month.
  void addMonths(int months);

  int day() const;
  int month() const;
  int year() const;
  /// 0 for Sunday to 6 for Saturday.
  int dayOfWeek() const;
  /// Days from other to this date, negative if other is later.
  int daysSince(const FXJulianDate& other) const;
  /// Number of days in the date's month.
  int daysThisMonth() const;
  std::uint32_t julianDay() const { return m_julian; }

  /// Sets year, month and day of a Julian day number.
  static void jul2greg(std::uint32_t julianDay, int& year, int& month, int& day);
  /// Three-letter English name; empty if the month is not 1 to 12.
  static const char* shortMonthName(int month);
  /// Full English name; empty if the month is not 1 to 12.
  static const char* monthName(int month);
  /// Month number of a three-letter English name in any case; -1 if unknown.
  static int monthFromShortName(const char* name);
  /// 0 to 69 become 20xx, 70 to 99 become 19xx, other values are unchanged.
  static unsigned ShortYearToFullYear(unsigned year);

protected:
  std::uint32_t m_julian;
};

} // namespace Tallymoor
