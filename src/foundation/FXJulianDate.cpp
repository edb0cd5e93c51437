#include "foundation/FXJulianDate.h"
#include <algorithm>
#include <array>
#include <ctime>
#include <strings.h>

namespace Tallymoor {

namespace {

constexpr std::int64_t JULIAN_DAY_OF_EPOCH = 2440588; // 1 January 1970
constexpr int FIRST_YEAR = 1;
constexpr int LAST_YEAR = 9999;

constexpr std::array<const char*, 12> MONTH_NAMES = {"January",   "February", "March",    "April",
                                                     "May",       "June",     "July",     "August",
                                                     "September", "October",  "November", "December"};
constexpr std::array<const char*, 12> SHORT_MONTH_NAMES = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                           "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

/// Days from 1 January 1970 to the first of a month. Counts in eras of 400 years that begin on 1 March, so
/// that the leap day is the last of its year.
constexpr std::int64_t daysToFirstOf(std::int64_t year, std::int64_t month) {
  const std::int64_t y = month <= 2 ? year - 1 : year;
  const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
  const std::int64_t yearOfEra = y - era * 400;
  const std::int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

constexpr std::int64_t FIRST_DAY = daysToFirstOf(FIRST_YEAR, 1) + JULIAN_DAY_OF_EPOCH;
constexpr std::int64_t LAST_DAY = daysToFirstOf(LAST_YEAR + 1, 1) + JULIAN_DAY_OF_EPOCH - 1;

std::uint32_t insideCalendar(std::int64_t julianDay) {
  return static_cast<std::uint32_t>(std::clamp(julianDay, FIRST_DAY, LAST_DAY));
}

/// Months since January of the year 0, taken apart again so that any month number carries into the year.
std::int64_t julianDayOf(std::int64_t months, std::int64_t day) {
  const std::int64_t year = (months >= 0 ? months : months - 11) / 12;
  return daysToFirstOf(year, months - year * 12 + 1) + JULIAN_DAY_OF_EPOCH + day - 1;
}

int monthLength(int year, int month) {
  const std::int64_t months = std::int64_t{year} * 12 + month - 1;
  return static_cast<int>(julianDayOf(months + 1, 1) - julianDayOf(months, 1));
}

} // namespace

std::atomic<std::uint32_t> Clock::s_today = 0;

std::uint32_t Clock::today() {
  if (const std::uint32_t fixed = s_today.load())
    return fixed;
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return FXJulianDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday).julianDay();
}

void Clock::setToday(std::uint32_t julianDay) {
  s_today.store(julianDay);
}

FXJulianDate::FXJulianDate() : m_julian(Clock::today()) {}

FXJulianDate::FXJulianDate(int year, int month, int day) {
  setDate(year, month, day);
}

void FXJulianDate::setDate(int year, int month, int day) {
  m_julian = insideCalendar(julianDayOf(std::int64_t{year} * 12 + month - 1, day));
}

void FXJulianDate::addDays(int days) {
  m_julian = insideCalendar(std::int64_t{m_julian} + days);
}

void FXJulianDate::addMonths(int months) {
  int year = 0, month = 0, day = 0;
  jul2greg(m_julian, year, month, day);
  const std::int64_t reached = std::clamp<std::int64_t>(std::int64_t{year} * 12 + month - 1 + months,
                                                        FIRST_YEAR * 12, LAST_YEAR * 12 + 11);
  const int reachedYear = static_cast<int>(reached / 12);
  const int reachedMonth = static_cast<int>(reached % 12) + 1;
  setDate(reachedYear, reachedMonth, std::min(day, monthLength(reachedYear, reachedMonth)));
}

int FXJulianDate::day() const {
  int year = 0, month = 0, day = 0;
  jul2greg(m_julian, year, month, day);
  return day;
}

int FXJulianDate::month() const {
  int year = 0, month = 0, day = 0;
  jul2greg(m_julian, year, month, day);
  return month;
}

int FXJulianDate::year() const {
  int year = 0, month = 0, day = 0;
  jul2greg(m_julian, year, month, day);
  return year;
}

int FXJulianDate::dayOfWeek() const {
  return static_cast<int>((std::uint64_t{m_julian} + 1) % 7);
}

int FXJulianDate::daysSince(const FXJulianDate& other) const {
  return static_cast<int>(std::int64_t{m_julian} - std::int64_t{other.m_julian});
}

int FXJulianDate::daysThisMonth() const {
  int year = 0, month = 0, day = 0;
  jul2greg(m_julian, year, month, day);
  return monthLength(year, month);
}

void FXJulianDate::jul2greg(std::uint32_t julianDay, int& year, int& month, int& day) {
  const std::int64_t days = std::int64_t{julianDay} - JULIAN_DAY_OF_EPOCH + 719468;
  const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
  const std::int64_t dayOfEra = days - era * 146097;
  const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t shiftedMonth = (5 * dayOfYear + 2) / 153; // 0 is March
  day = static_cast<int>(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1);
  month = static_cast<int>(shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9);
  year = static_cast<int>(yearOfEra + era * 400 + (month <= 2 ? 1 : 0));
}

const char* FXJulianDate::shortMonthName(int month) {
  return month >= 1 && month <= 12 ? SHORT_MONTH_NAMES[static_cast<std::size_t>(month - 1)] : "";
}

const char* FXJulianDate::monthName(int month) {
  return month >= 1 && month <= 12 ? MONTH_NAMES[static_cast<std::size_t>(month - 1)] : "";
}

int FXJulianDate::monthFromShortName(const char* name) {
  if (!name)
    return -1;
  const auto found = std::find_if(SHORT_MONTH_NAMES.begin(), SHORT_MONTH_NAMES.end(),
                                  [name](const char* known) { return strcasecmp(known, name) == 0; });
  return found == SHORT_MONTH_NAMES.end() ? -1 : static_cast<int>(found - SHORT_MONTH_NAMES.begin()) + 1;
}

unsigned FXJulianDate::ShortYearToFullYear(unsigned year) {
  if (year < 70)
    return year + 2000;
  return year < 100 ? year + 1900 : year;
}

} // namespace Tallymoor
