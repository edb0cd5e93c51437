#include "foundation/FXJulianDate.h"
#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <strings.h>

namespace Tallymoor {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr std::int64_t JULIAN_DAY_OF_EPOCH = 2440588; // 1 January 1970
constexpr int FIRST_YEAR = 1;
constexpr int LAST_YEAR = 9999;

constexpr std::array<const char*, 12> MONTH_NAMES = {"January",   "February", "March",    "April",
                                                     "May",       "June",     "July",     "August",
                                                     "September", "October",  "November", "December"};
constexpr std::array<const char*, 12> SHORT_MONTH_NAMES = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                           "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

/// months counts from January of the year 0, so that any month number carries into the year.
constexpr std::int64_t julianDayOf(std::int64_t months, std::int64_t day) {
  const std::int64_t year = (months >= 0 ? months : months - 11) / 12;
  const auto month = static_cast<int>(months - year * 12 + 1);
  // std::chrono::year has a limited range, so whole eras of 400 years are split off first.
  constexpr std::int64_t DAYS_OF_ERA = 146097;
  const sys_days first = std::chrono::year(static_cast<int>(year % 400)) / month / 1;
  return year / 400 * DAYS_OF_ERA + first.time_since_epoch().count() + JULIAN_DAY_OF_EPOCH + day - 1;
}

constexpr std::int64_t FIRST_DAY = julianDayOf(std::int64_t{FIRST_YEAR} * 12, 1);
constexpr std::int64_t LAST_DAY = julianDayOf(std::int64_t{LAST_YEAR + 1} * 12, 1) - 1;

std::uint32_t insideCalendar(std::int64_t julianDay) {
  return static_cast<std::uint32_t>(std::clamp(julianDay, FIRST_DAY, LAST_DAY));
}

sys_days dayOf(std::uint32_t julianDay) {
  return sys_days(days(std::int64_t{julianDay} - JULIAN_DAY_OF_EPOCH));
}

int lengthOf(const std::chrono::year_month& month) {
  return static_cast<int>(unsigned((month / std::chrono::last).day()));
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

FXJulianDate::FXJulianDate(int year, int month, int day) : m_julian(0) {
  setDate(year, month, day);
}

void FXJulianDate::setDate(int year, int month, int day) {
  m_julian = insideCalendar(julianDayOf(std::int64_t{year} * 12 + month - 1, day));
}

void FXJulianDate::addDays(int days) {
  m_julian = insideCalendar(std::int64_t{m_julian} + days);
}

void FXJulianDate::addMonths(int months) {
  const year_month_day date(dayOf(m_julian));
  const std::int64_t reached =
      std::clamp(std::int64_t{int(date.year())} * 12 + unsigned(date.month()) - 1 + months,
                 std::int64_t{FIRST_YEAR} * 12, std::int64_t{LAST_YEAR} * 12 + 11);
  const auto reachedMonth = std::chrono::year(0) / 1 + std::chrono::months(static_cast<int>(reached));
  m_julian = insideCalendar(julianDayOf(reached, std::min(day(), lengthOf(reachedMonth))));
}

int FXJulianDate::day() const {
  return static_cast<int>(unsigned(year_month_day(dayOf(m_julian)).day()));
}

int FXJulianDate::month() const {
  return static_cast<int>(unsigned(year_month_day(dayOf(m_julian)).month()));
}

int FXJulianDate::year() const {
  return int(year_month_day(dayOf(m_julian)).year());
}

int FXJulianDate::dayOfWeek() const {
  return static_cast<int>(std::chrono::weekday(dayOf(m_julian)).c_encoding());
}

int FXJulianDate::daysSince(const FXJulianDate& other) const {
  return static_cast<int>((dayOf(m_julian) - dayOf(other.m_julian)).count());
}

int FXJulianDate::daysThisMonth() const {
  const year_month_day date(dayOf(m_julian));
  return lengthOf(date.year() / date.month());
}

void FXJulianDate::jul2greg(std::uint32_t julianDay, int& year, int& month, int& day) {
  const year_month_day date(dayOf(julianDay));
  year = int(date.year());
  month = static_cast<int>(unsigned(date.month()));
  day = static_cast<int>(unsigned(date.day()));
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
