#include "foundation/ShortDatePicture.h"
#include "foundation/IcuText.h"
#include <algorithm>
#include <cctype>
#include <memory>
#include <unicode/dtptngen.h>

namespace Tallymoor {

namespace {

const String FALLBACK_PICTURE = u"dd/MM/yyyy";

/// A part of the picture: its first letter and its number of code units.
struct Part {
  char16_t letter;
  std::size_t length;
};

/// The part at a position. A longer run of a letter is split: "ddd" is "dd" and "d".
Part partAt(const String& picture, std::size_t position) {
  const char16_t letter = picture[position];
  const auto run = [&](std::size_t wanted) {
    return picture.compare(position, wanted, String::Base(wanted, letter)) == 0;
  };
  if (letter == u'd' || letter == u'M')
    return {letter, run(2) ? 2u : 1u};
  if (letter == u'y' && run(4))
    return {letter, 4};
  if (letter == u'y' && run(2))
    return {letter, 2};
  return {u'\0', 1};
}

String padded(int number, std::size_t width) {
  const String digits = String::fromLong(number);
  return String(String::Base(width > digits.size() ? width - digits.size() : 0, u'0')) + digits;
}

/// Removes quoted text, in which ICU puts words like "de".
String withoutQuotes(const String& pattern) {
  String result;
  bool quoted = false;
  for (const char16_t unit : pattern) {
    if (unit == u'\'')
      quoted = !quoted;
    else if (!quoted)
      result.push_back(unit);
  }
  return result;
}

/// Converts ICU's pattern letters: runs of y, u or r become the year, M or L the month, d the day. Other
/// letters (era, weekday) are removed.
String pictureOf(const String& pattern) {
  String picture;
  for (std::size_t i = 0; i < pattern.size();) {
    const char16_t unit = pattern[i];
    std::size_t end = i;
    while (end < pattern.size() && pattern[end] == unit)
      ++end;
    if (unit == u'y' || unit == u'u' || unit == u'r')
      picture += u"yyyy";
    else if (unit == u'M' || unit == u'L')
      picture += end - i == 1 ? u"M" : u"MM";
    else if (unit == u'd')
      picture += end - i == 1 ? u"d" : u"dd";
    else if (!(unit < 0x80 && std::isalpha(unit)) && !isDirectionMark(unit))
      picture.append(pattern, i, end - i);
    i = end;
  }
  return picture.trimmed();
}

/// Parses a text by a picture.
class Walk {
public:
  Walk(const String& picture, const String& text) : m_picture(picture), m_text(text) {}

  Date date() {
    for (std::size_t p = 0; p < m_picture.size();) {
      const Part part = partAt(m_picture, p);
      read(part);
      p += part.length;
    }
    return Date(m_year, m_month, m_day);
  }

private:
  void read(const Part& part) {
    switch (part.letter) {
    case u'd':
      m_day = part.length == 1 ? freeNumber() : fixedNumber(2);
      break;
    case u'M':
      m_month = part.length == 1 ? freeNumber() : fixedNumber(2);
      break;
    case u'y':
      m_year =
          part.length == 4
              ? fixedNumber(4)
              : static_cast<int>(FXJulianDate::ShortYearToFullYear(static_cast<unsigned>(fixedNumber(2))));
      break;
    default:
      ++m_position;
    }
  }

  /// A number of exactly this width. Missing digits read as 0.
  int fixedNumber(std::size_t width) {
    const int number = String(rest().substr(0, width)).toLong();
    m_position += width;
    return number;
  }

  int freeNumber() {
    const int number = rest().toLong();
    m_position += String::fromLong(number).size();
    return number;
  }

  String rest() const { return m_text.substr(std::min(m_position, m_text.size())); }

  const String& m_picture;
  const String& m_text;
  std::size_t m_position = 0;
  int m_day = 0;
  int m_month = 0;
  int m_year = 0;
};

} // namespace

ShortDatePicture ShortDatePicture::ofLocale(const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  icu::Locale gregorian(locale.c_str());
  gregorian.setKeywordValue("calendar", "gregorian", status);
  gregorian.setKeywordValue("numbers", "latn", status);
  const std::unique_ptr<icu::DateTimePatternGenerator> generator(
      icu::DateTimePatternGenerator::createInstance(gregorian, status));
  if (U_FAILURE(status))
    return ShortDatePicture(FALLBACK_PICTURE);
  const icu::UnicodeString pattern = generator->getBestPattern(u"yMd", status);
  if (U_FAILURE(status))
    return ShortDatePicture(FALLBACK_PICTURE);
  return ShortDatePicture(pictureOf(withoutQuotes(fromIcu(pattern))));
}

String ShortDatePicture::format(const Date& date) const {
  int year = 0, month = 0, day = 0;
  FXJulianDate::jul2greg(date.julianDay(), year, month, day);
  String text;
  for (std::size_t p = 0; p < m_picture.size();) {
    const Part part = partAt(m_picture, p);
    if (part.letter == u'd')
      text += padded(day, part.length);
    else if (part.letter == u'M')
      text += padded(month, part.length);
    else if (part.letter == u'y')
      text += padded(part.length == 2 ? year % 100 : year, part.length);
    else
      text += m_picture[p];
    p += part.length;
  }
  return text;
}

bool ShortDatePicture::parse(const String& text, Date& date) const {
  const Date read = Walk(m_picture, text).date();
  if (format(read) != text)
    return false;
  date = read;
  return true;
}

} // namespace Tallymoor
