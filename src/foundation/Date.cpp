#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "foundation/Platform.h"
#include <array>
#include <optional>

namespace Tallymoor {

std::atomic<std::uint32_t> Date::s_fixedDate = 0;

namespace {

constexpr int FRIDAY = 5;
constexpr int SATURDAY = 6;
constexpr int SUNDAY = 0;

using Pieces = std::array<String, 3>;

Exception failure(const char16_t* reason, const String& text) {
  constexpr std::size_t LONGEST = 80; // Text from a file can have any length.
  const bool isLong = text.size() > LONGEST;
  return Exception(u"Date::fromString - " + String(reason) + text.substr(0, LONGEST) +
                   (isLong ? u"..." : u""));
}

/// Splits a text at its first two separators. The last piece keeps any further separators.
Pieces cutAtSeparators(const String& text, char16_t separator) {
  const std::size_t first = text.find(separator);
  if (first == String::npos)
    throw failure(u"no separator: ", text);
  const std::size_t second = text.find(separator, first + 1);
  if (second == String::npos)
    throw failure(u"no separator2: ", text);
  return {text.substr(0, first), text.substr(first + 1, second - first - 1), text.substr(second + 1)};
}

using Numbers = std::array<std::int32_t, 3>;

/// Reads the documents' form: digits and two slashes. Empty for any other text. It copies nothing, because a
/// record has tens of thousands of dates.
std::optional<Numbers> plainNumbers(const String& text) {
  constexpr int MOST_DIGITS = 6;
  Numbers numbers{};
  std::size_t place = 0;
  int digits = 0;
  for (const char16_t unit : text) {
    if (unit == u'/' && digits > 0 && place + 1 < numbers.size()) {
      ++place;
      digits = 0;
    } else if (unit >= u'0' && unit <= u'9' && digits < MOST_DIGITS) {
      numbers[place] = numbers[place] * 10 + (unit - u'0');
      ++digits;
    } else {
      return std::nullopt;
    }
  }
  return place + 1 == numbers.size() && digits > 0 ? std::optional(numbers) : std::nullopt;
}

Numbers numbersOf(const String& text) {
  if (const auto plain = plainNumbers(text))
    return *plain;
  const Pieces piece = cutAtSeparators(text, u'/');
  return {piece[0].toLong(), piece[1].toLong(), piece[2].toLong()};
}

int monthNamed(const String& name, const String& text) {
  const int month = FXJulianDate::monthFromShortName(name.toLatin1().c_str());
  if (month < 0)
    throw failure(u"DATE_DISPLAY_MIDDATE1 unknown month: ", text);
  return month;
}

} // namespace

Date::Date() : FXJulianDate(0u) {
  const std::uint32_t fixed = s_fixedDate.load();
  m_julian = fixed ? fixed : Clock::today();
}

Date::Date(const String& text, int format) : FXJulianDate(0u) {
  fromString(text, format);
}

void Date::setFixedDate(const Date& date) {
  s_fixedDate.store(date.m_julian);
}

void Date::clearFixedDate() {
  s_fixedDate.store(0);
}

bool Date::hasFixedDate() {
  return s_fixedDate.load() != 0;
}

Date Date::realToday() {
  return Date(Clock::today());
}

String Date::toString(int format) const {
  int y = 0, m = 0, d = 0;
  jul2greg(m_julian, y, m, d);
  const String year = String::fromLong(y);
  const String month = String::fromLong(m);
  const String day = String::fromLong(d);
  switch (format) {
  case DATE_DISPLAY_DMY:
  case DATE_DISPLAY_DMY2:
    return day + u'/' + month + u'/' + year;
  case DATE_DISPLAY_MDY:
    return month + u'/' + day + u'/' + year;
  case DATE_DISPLAY_YMD:
    return year + u'/' + month + u'/' + day;
  case DATE_DISPLAY_MIDDATE1:
    return day + u'-' + String(shortMonthName(m)) + u'-' +
           String(year.substr(year.size() < 2 ? 0 : year.size() - 2));
  case DATE_DISPLAY_LOCAL:
    return Platform::Instance().shortDateFormat(*this);
  default:
    throw Exception(u"Date::toString - unknown format");
  }
}

String Date::todayToString(int format) {
  return Date().toString(format);
}

void Date::fromString(const String& text, int format) {
  if (format == DATE_DISPLAY_LOCAL) {
    Date parsed(m_julian);
    if (!Platform::Instance().parseShortDate(text, parsed))
      throw failure(u"not in local format: ", text);
    *this = parsed;
    return;
  }
  if (format == DATE_DISPLAY_MIDDATE1) {
    const Pieces piece = cutAtSeparators(text, u'-');
    const int month = monthNamed(piece[1], text);
    const unsigned year = ShortYearToFullYear(static_cast<unsigned>(piece[2].toLong()));
    setDate(static_cast<int>(year), month, piece[0].toLong());
    return;
  }
  const Numbers number = numbersOf(text);
  switch (format) {
  case DATE_DISPLAY_DMY:
  case DATE_DISPLAY_DMY2:
    setDate(number[2], number[1], number[0]);
    break;
  case DATE_DISPLAY_MDY:
    setDate(number[2], number[0], number[1]);
    break;
  case DATE_DISPLAY_YMD:
    setDate(number[0], number[1], number[2]);
    break;
  default:
    throw failure(u"bad format: ", text);
  }
}

Date Date::plusDays(int days) const {
  Date result = *this;
  result.addDays(days);
  return result;
}

Date Date::plusMonths(int months) const {
  Date result = *this;
  result.addMonths(months);
  return result;
}

Date Date::lastDayOfMonth() const {
  return plusDays(daysThisMonth() - day());
}

Date Date::fridayBeforeLastWeekend() const {
  const int weekday = dayOfWeek();
  return plusDays(weekday == SUNDAY ? -9 : -(weekday + 2));
}

Date Date::lastFriday() const {
  const int weekday = dayOfWeek();
  return plusDays(weekday == SATURDAY ? FRIDAY - SATURDAY : -(weekday + 2));
}

bool Date::isWeekend() const {
  const int weekday = dayOfWeek();
  return weekday == SATURDAY || weekday == SUNDAY;
}

} // namespace Tallymoor
