#pragma once
#include <atomic>
#include <cstdint>

namespace Tallymoor {

/// Where "today" comes from: the local calendar day of the system clock, unless a test has set another one.
class Clock {
public:
  /// Julian day number of today's local date.
  static std::uint32_t today();
  /// For tests: today becomes this Julian day; 0 goes back to the system clock. Safe on any thread.
  static void setToday(std::uint32_t julianDay);

private:
  static std::atomic<std::uint32_t> s_today;
};

/// A Julian day number over the proleptic Gregorian calendar, years 1 to 9999.
class FXJulianDate {
public:
  /// Today by Clock.
  FXJulianDate();
  explicit FXJulianDate(std::uint32_t julianDay) : m_julian(julianDay) {}
  FXJulianDate(int year, int month, int day);
  FXJulianDate(const FXJulianDate&) = default;
  FXJulianDate& operator=(const FXJulianDate&) = default;
  virtual ~FXJulianDate() = default;

  /// Parts outside the calendar are carried over (31 April is 1 May), never refused.
  void setDate(int year, int month, int day);
  /// A negative count goes back. At either end of the calendar the date stays there.
  void addDays(int days);
  /// Keeps the day of the month, clamped to the month's last day.
  void addMonths(int months);

  int day() const;
  int month() const;
  int year() const;
  /// 0 for Sunday to 6 for Saturday.
  int dayOfWeek() const;
  /// Signed days from other to this date.
  int daysSince(const FXJulianDate& other) const;
  /// Length of the date's month.
  int daysThisMonth() const;
  std::uint32_t julianDay() const { return m_julian; }

  /// The calendar parts of a day number.
  static void jul2greg(std::uint32_t julianDay, int& year, int& month, int& day);
  /// Three-letter English name; an empty text for a month outside 1 to 12.
  static const char* shortMonthName(int month);
  /// Full English name; an empty text for a month outside 1 to 12.
  static const char* monthName(int month);
  /// Month number for a three-letter English name in any case, or -1.
  static int monthFromShortName(const char* name);
  /// 0 to 69 are 20xx, 70 to 99 are 19xx, anything else stays as it is.
  static unsigned ShortYearToFullYear(unsigned year);

protected:
  std::uint32_t m_julian;
};

} // namespace Tallymoor
