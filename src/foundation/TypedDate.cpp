#include "foundation/TypedDate.h"
#include "foundation/IcuText.h"
#include "foundation/ShortDatePicture.h"
#include <array>
#include <optional>
#include <set>
#include <unicode/coll.h>
#include <unicode/datefmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/dtptngen.h>
#include <unicode/gregocal.h>
#include <unicode/uchar.h>
#include <vector>

namespace Tallymoor {

namespace {

constexpr std::size_t LONGEST_TEXT = 80;
constexpr int MONTHS = 12;

icu::UnicodeString toIcu(const String& text) {
  return icu::UnicodeString(text.data(), static_cast<std::int32_t>(text.size()));
}

icu::Locale gregorian(const std::string& name) {
  icu::Locale locale(name.c_str());
  UErrorCode status = U_ZERO_ERROR;
  locale.setKeywordValue("calendar", "gregorian", status);
  return locale;
}

/// ICU's pattern for these fields. Empty if ICU has none.
String patternOf(const std::string& locale, const char16_t* fields) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::DateTimePatternGenerator> generator(
      icu::DateTimePatternGenerator::createInstance(gregorian(locale), status));
  if (U_FAILURE(status))
    return String();
  const icu::UnicodeString pattern = generator->getBestPattern(fields, status);
  return U_FAILURE(status) ? String() : fromIcu(pattern);
}

/// True if the letter comes before all the others.
bool comesFirst(const String& pattern, char16_t letter, std::u16string_view others) {
  const std::size_t place = pattern.find(letter);
  return place != String::npos && place < pattern.find_first_of(others);
}

/// Normalises digits, blanks and hyphens and removes direction marks.
String plain(const String& text) {
  String result;
  for (char16_t unit : text) {
    const std::int32_t digit = u_charDigitValue(unit);
    if (digit >= 0)
      result += static_cast<char16_t>(u'0' + digit);
    else if (u_isUWhiteSpace(unit))
      result += u' ';
    else if ((unit >= 0x2010 && unit <= 0x2015) || unit == 0x2212)
      result += u'-';
    else if (!isDirectionMark(unit))
      result += unit;
  }
  return result.trimmed();
}

bool isDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

bool isLetter(char16_t unit) {
  return u_isalpha(unit) || (U_GET_GC_MASK(unit) & U_GC_M_MASK);
}

/// A number or a word in a date.
struct Token {
  bool isNumber() const { return isDigit(text[0]); }
  bool isYear() const { return isNumber() && text.size() == 4; }
  /// True for a day, a month or a two-digit year.
  bool isShort() const { return isNumber() && text.size() <= 2; }
  int number() const { return text.toLong(); }

  String text;
};
using Tokens = std::vector<Token>;

/// True for one separator character with optional blanks around it, or blanks alone.
bool isGap(const String& text) {
  const String mark = text.trimmed();
  return mark.empty() || (mark.size() == 1 && String(u"/.-,").contains(mark));
}

/// Splits a date into its three parts. Empty if the text has another form.
std::optional<Tokens> cut(const String& text) {
  Tokens tokens;
  for (std::size_t i = 0; i < text.size();) {
    const auto endOf = [&](auto isPart) {
      std::size_t end = i;
      while (end < text.size() && isPart(text[end]))
        ++end;
      return end;
    };
    std::size_t end = endOf(isDigit);
    if (end == i)
      end = endOf(isLetter);
    if (end > i) {
      tokens.push_back({text.substr(i, end - i)});
    } else {
      end = endOf([](char16_t unit) { return !isDigit(unit) && !isLetter(unit); });
      const String gap = text.substr(i, end - i);
      // Some locales put a full stop after the year.
      const bool fits = end == text.size() ? gap == String(u".") : !tokens.empty() && isGap(gap);
      if (!fits)
        return std::nullopt;
    }
    i = end;
  }
  return tokens.size() == 3 ? std::optional(tokens) : std::nullopt;
}

struct Day {
  int year;
  int month;
  int day;
};

/// Converts a year of two or four digits.
int fullYear(const Token& token) {
  const int year = token.number();
  return token.isYear() ? year : static_cast<int>(FXJulianDate::ShortYearToFullYear(unsigned(year)));
}

bool canBeYear(const Token& token) {
  return token.isYear() || (token.isNumber() && token.text.size() == 2);
}

std::optional<Day> dayOf(const Token& year, int month, const Token& day) {
  if (!canBeYear(year) || !day.isShort())
    return std::nullopt;
  return Day{fullYear(year), month, day.number()};
}

bool fill(const std::optional<Day>& read, Date& date) {
  constexpr int FIRST_YEAR = 1000; // A smaller year is a typing error.
  if (!read || read->year < FIRST_YEAR || read->month < 1 || read->month > MONTHS || read->day < 1)
    return false;
  const Date day(read->year, read->month, read->day);
  if (day.day() != read->day) // The day was carried over into the next month.
    return false;
  date = day;
  return true;
}

/// Reads the locale's own forms: "1 de noviembre de 2023".
std::optional<Day> readByIcu(const String& text, const std::string& locale, icu::DateFormat::EStyle style) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::DateFormat> format(
      icu::DateFormat::createDateInstance(style, gregorian(locale)));
  icu::GregorianCalendar calendar(gregorian(locale), status);
  if (!format || U_FAILURE(status))
    return std::nullopt;
  format->setLenient(false);
  calendar.setLenient(false);
  calendar.clear();
  icu::ParsePosition position(0);
  const icu::UnicodeString whole = toIcu(text);
  format->parse(whole, calendar, position);
  if (position.getErrorIndex() >= 0 || position.getIndex() != whole.length())
    return std::nullopt;
  const int year = calendar.get(UCAL_YEAR, status);
  const Day read{year < 100 ? static_cast<int>(FXJulianDate::ShortYearToFullYear(unsigned(year))) : year,
                 calendar.get(UCAL_MONTH, status) + 1, calendar.get(UCAL_DATE, status)};
  const bool beforeChrist = calendar.get(UCAL_ERA, status) != icu::GregorianCalendar::AD;
  return U_FAILURE(status) || beforeChrist ? std::nullopt : std::optional(read);
}

} // namespace

/// The order of day, month and year.
struct TypedDate::Order {
  Order(const ShortDatePicture& picture, const std::string& locale)
      : yearFirst(comesFirst(picture.text(), u'y', u"Md")),
        yearBeforeName(comesFirst(patternOf(locale, u"yMMMd"), u'y', u"MLd")),
        dayBeforeMonth(comesFirst(yearFirst ? patternOf(locale, u"Md") : picture.text(), u'd', u"ML")) {}

  /// Assigns three numbers.
  std::optional<Day> ofNumbers(const Tokens& part) const {
    if (part[0].isYear() || (yearFirst && !part[2].isYear()))
      return part[1].isShort() ? dayOf(part[0], part[1].number(), part[2]) : std::nullopt;
    const Token& day = part[dayBeforeMonth ? 0 : 1];
    const Token& month = part[dayBeforeMonth ? 1 : 0];
    return month.isShort() ? dayOf(part[2], month.number(), day) : std::nullopt;
  }

  /// Assigns two numbers; the month's name was before or between them.
  std::optional<Day> ofNamedMonth(const Token& first, int month, const Token& last) const {
    const bool yearLeads = first.isYear() || (yearBeforeName && !last.isYear());
    return yearLeads ? dayOf(first, month, last) : dayOf(last, month, first);
  }

  bool yearFirst;
  bool yearBeforeName;
  bool dayBeforeMonth;
};

/// Month names in a locale and in English. Ignores case and accents.
class TypedDate::MonthNames {
public:
  explicit MonthNames(const std::string& locale) : m_local(locale), m_english("en") {}

  /// Returns 1 to 12, or 0 if the word is unknown or ambiguous.
  int month(const String& word) const {
    const int local = m_local.exact(word);
    if (local > 0)
      return local;
    std::set<int> months = m_local.begunBy(word);
    months.merge(m_english.begunBy(word));
    return months.size() == 1 ? *months.begin() : 0;
  }

private:
  class Language {
  public:
    explicit Language(const std::string& locale) {
      UErrorCode status = U_ZERO_ERROR;
      m_collator.reset(icu::Collator::createInstance(icu::Locale(locale.c_str()), status));
      if (m_collator)
        m_collator->setStrength(icu::Collator::PRIMARY);
      const icu::DateFormatSymbols symbols(gregorian(locale), status);
      if (U_FAILURE(status))
        return;
      for (const auto context : {icu::DateFormatSymbols::FORMAT, icu::DateFormatSymbols::STANDALONE})
        for (const auto width : {icu::DateFormatSymbols::WIDE, icu::DateFormatSymbols::ABBREVIATED}) {
          std::int32_t count = 0;
          const icu::UnicodeString* names = symbols.getMonths(count, context, width);
          for (int i = 0; i < count && i < MONTHS; ++i)
            addName(i, names[i]);
        }
    }

    int exact(const String& word) const {
      for (int i = 0; i < MONTHS; ++i)
        for (const icu::UnicodeString& name : m_names[static_cast<std::size_t>(i)])
          if (isSame(name, toIcu(word)))
            return i + 1;
      return 0;
    }

    /// Months whose names begin with the word. It needs at least three letters.
    std::set<int> begunBy(const String& word) const {
      constexpr std::int32_t FEWEST_LETTERS = 3;
      const icu::UnicodeString typed = toIcu(word);
      std::set<int> months;
      for (int i = 0; typed.length() >= FEWEST_LETTERS && i < MONTHS; ++i)
        for (const icu::UnicodeString& name : m_names[static_cast<std::size_t>(i)])
          if (name.length() >= typed.length() && isSame(name.tempSubString(0, typed.length()), typed))
            months.insert(i + 1);
      return months;
    }

  private:
    /// Skips names that are numbers, as in Chinese.
    void addName(int month, icu::UnicodeString name) {
      name.findAndReplace(icu::UnicodeString(u'.'), icu::UnicodeString());
      if (!name.isEmpty() && u_isalpha(name.char32At(0)))
        m_names[static_cast<std::size_t>(month)].push_back(name);
    }

    bool isSame(const icu::UnicodeString& left, const icu::UnicodeString& right) const {
      UErrorCode status = U_ZERO_ERROR;
      return m_collator && m_collator->compare(left, right, status) == UCOL_EQUAL && U_SUCCESS(status);
    }

    std::unique_ptr<icu::Collator> m_collator;
    std::array<std::vector<icu::UnicodeString>, MONTHS> m_names;
  };

  Language m_local;
  Language m_english;
};

TypedDate::TypedDate(const ShortDatePicture& picture, const std::string& locale)
    : m_order(std::make_unique<const Order>(picture, locale)),
      m_months(std::make_unique<const MonthNames>(locale)), m_locale(locale) {}

TypedDate::~TypedDate() = default;

bool TypedDate::read(const String& text, Date& date) const {
  const String typed = plain(text);
  if (typed.empty() || typed.size() > LONGEST_TEXT)
    return false;
  if (const std::optional<Tokens> part = cut(typed)) {
    const Token& first = (*part)[0];
    const Token& second = (*part)[1];
    const Token& last = (*part)[2];
    if (!last.isNumber())
      return false;
    if (first.isNumber() && second.isNumber())
      return fill(m_order->ofNumbers(*part), date);
    if (first.isNumber())
      return fill(m_order->ofNamedMonth(first, m_months->month(second.text), last), date);
    return second.isNumber() && fill(m_order->ofNamedMonth(second, m_months->month(first.text), last), date);
  }
  for (const auto style : {icu::DateFormat::kLong, icu::DateFormat::kMedium})
    if (fill(readByIcu(typed, m_locale, style), date))
      return true;
  return false;
}

} // namespace Tallymoor
