#include "pages/AnswerFigures.h"
#include "foundation/IcuText.h"
#include "pages/PageFigure.h"
#include <algorithm>
#include <charconv>
#include <cmath>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/uchar.h>

namespace Tallymoor {

namespace {

using Fault = AnswerException::Fault;

constexpr std::size_t LONGEST_DAY = 100;
constexpr double SECOND = 1000.0; // in milliseconds, as all of ICU's moments are
constexpr double DAY = 24 * 60 * 60 * SECOND;

icu::UnicodeString toIcu(const String& text) {
  return {text.data(), static_cast<int32_t>(text.size())};
}

[[noreturn]] void failAt(const String& what, const String& text) {
  throw AnswerException(Fault::Unreadable, what + u": " + inMessage(text));
}

std::unique_ptr<icu::TimeZone> timeZoneOf(const String& name) {
  std::unique_ptr<icu::TimeZone> zone(name.empty() ? icu::TimeZone::getGMT()->clone()
                                                   : icu::TimeZone::createTimeZone(toIcu(name)));
  if (*zone == icu::TimeZone::getUnknown())
    failAt(u"unknown time zone", name);
  return zone;
}

/// The length of the unit of an epoch's count in milliseconds; nothing for a date pattern.
std::optional<double> epochUnit(const String& pattern) {
  if (pattern == EPOCH_SECONDS)
    return SECOND;
  if (pattern == EPOCH_MILLISECONDS)
    return 1.0;
  if (pattern == EPOCH_DAYS)
    return DAY;
  return std::nullopt;
}

/// A number with a point as the decimal sign that takes up the whole text, with an exponent perhaps, as JSON
/// has it.
std::optional<double> plainNumber(const String& text) {
  const std::string digits = text.toLatin1();
  double value = 0.0;
  const auto [rest, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  const bool isWhole = error == std::errc() && rest == digits.data() + digits.size();
  return isWhole && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

/// Signs that stand for one currency alone; "$" does not.
struct CurrencySign {
  char16_t sign;
  std::u16string_view currency;
};
constexpr CurrencySign CURRENCY_SIGNS[] = {{u'\u20AC', u"EUR"}, {u'\u00A3', u"GBP"}};

bool hasSignOfAnother(const String& text, const String& currency) {
  return !currency.empty() && std::ranges::any_of(CURRENCY_SIGNS, [&](const CurrencySign& each) {
    return text.find(each.sign) != String::npos && currency != String(each.currency);
  });
}

/// Without one sign of a currency in front, as in "$10.50" or "\u20AC 10,50".
String withoutCurrencySign(const String& text) {
  const String number = withoutPageBlanks(text);
  const bool hasSign = !number.empty() && u_charType(number[0]) == U_CURRENCY_SYMBOL;
  return hasSign ? withoutPageBlanks(number.substr(1)) : number;
}

NumberSigns signsOf(char16_t decimalSign) {
  constexpr std::u16string_view WITH_COMMA = u",' \u00A0\u202F\u2019";
  constexpr std::u16string_view WITH_POINT = u".' \u00A0\u202F\u2019";
  return {decimalSign, decimalSign == u',' ? WITH_POINT : WITH_COMMA};
}

} // namespace

/// Reads days by a date pattern or as a count from 1970.
class AnswerFigures::DayReader {
public:
  explicit DayReader(const AnswerFormat& format)
      : m_epochUnit(epochUnit(format.datePattern)), m_zone(timeZoneOf(format.timeZone)) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::Locale locale(format.dateLocale.empty() ? "en" : format.dateLocale.toLatin1().c_str());
    m_pattern = std::make_unique<icu::SimpleDateFormat>(toIcu(m_epochUnit ? String() : format.datePattern),
                                                        locale, error);
    m_calendar = std::make_unique<icu::GregorianCalendar>(*m_zone, error);
    if (U_FAILURE(error) || (!m_epochUnit && format.datePattern.empty()))
      failAt(u"unknown date pattern", format.datePattern);
    m_pattern->setTimeZone(*m_zone);
    m_pattern->setLenient(false);
  }

  std::optional<Date> day(const String& text) const {
    const std::optional<UDate> moment = m_epochUnit ? momentOfCount(text) : momentOfPattern(text);
    if (!moment)
      return std::nullopt;
    if (m_epochUnit == DAY)
      return dayIn(*icu::TimeZone::getGMT(), *moment);
    return dayIn(*m_zone, *moment);
  }

private:
  std::optional<UDate> momentOfCount(const String& text) const {
    const std::optional<double> count = plainNumber(text);
    return count ? std::optional(*count * *m_epochUnit) : std::nullopt;
  }

  std::optional<UDate> momentOfPattern(const String& text) const {
    icu::ParsePosition place(0);
    const UDate moment = m_pattern->parse(toIcu(text), place);
    const bool isWhole = place.getErrorIndex() < 0 && place.getIndex() == static_cast<int32_t>(text.size());
    return isWhole ? std::optional(moment) : std::nullopt;
  }

  std::optional<Date> dayIn(const icu::TimeZone& zone, UDate moment) const {
    UErrorCode error = U_ZERO_ERROR;
    m_calendar->setTimeZone(zone);
    m_calendar->setTime(moment, error);
    const int year = m_calendar->get(UCAL_YEAR, error);
    const int month = m_calendar->get(UCAL_MONTH, error) + 1;
    const int day = m_calendar->get(UCAL_DATE, error);
    const bool isOfOurEra = m_calendar->get(UCAL_ERA, error) == icu::GregorianCalendar::AD;
    constexpr int FIRST_YEAR = 1900; // an earlier one is a year of two digits, or damage
    constexpr int LAST_YEAR = 9999;
    if (U_FAILURE(error) || !isOfOurEra || year < FIRST_YEAR || year > LAST_YEAR)
      return std::nullopt;
    return Date(year, month, day);
  }

  std::optional<double> m_epochUnit; ///< in milliseconds; nothing for a pattern
  std::unique_ptr<icu::TimeZone> m_zone;
  std::unique_ptr<icu::SimpleDateFormat> m_pattern;
  std::unique_ptr<icu::GregorianCalendar> m_calendar; ///< reused, since making one is slow
};

AnswerFigures::AnswerFigures(const AnswerFormat& format)
    : m_decimalSign(format.decimalSign), m_currency(format.currency), m_factor(format.factor),
      m_invert(format.invert), m_days(std::make_unique<DayReader>(format)) {}

AnswerFigures::~AnswerFigures() = default;

Date AnswerFigures::day(const String& text) const {
  const String day = withoutPageBlanks(text);
  if (day.size() <= LONGEST_DAY) // ICU takes quadratic time for a million digits
    if (const std::optional<Date> read = m_days->day(day))
      return *read;
  failAt(u"no day", text);
}

std::optional<double> AnswerFigures::number(const String& text) const {
  if (!holdsDigits(text))
    return std::nullopt;
  const String shown = text.find(u'&') == String::npos ? text : withCharacters(text);
  if (hasSignOfAnother(shown, m_currency))
    failAt(u"not in " + m_currency, text);
  const String number = withoutCurrencySign(shown);
  if (const std::optional<double> figure = readFigure(number, signsOf(m_decimalSign)))
    return figure;
  if (m_decimalSign == u'.')
    if (const std::optional<double> plain = plainNumber(number))
      return plain;
  failAt(u"no number", text);
}

std::optional<double> AnswerFigures::volume(const String& text) const {
  const std::optional<double> figure = readVolume(text, signsOf(m_decimalSign));
  return figure || m_decimalSign != u'.' ? figure : plainNumber(withoutPageBlanks(text));
}

std::optional<double> AnswerFigures::price(const String& text) const {
  const std::optional<double> figure = number(text);
  if (!figure || *figure == 0.0)
    return std::nullopt;
  if (*figure < 0.0)
    failAt(u"a price below zero", text);
  return (m_invert ? 1.0 / *figure : *figure) * m_factor;
}

} // namespace Tallymoor
