// Texts from pages and forms. The first byte selects a locale and a date format. 24 bytes follow for two
// integers and a real number, then lines: a possible date, a possible number and a date picture. A date or
// number must survive conversion to text and back.
#include "foundation/Amounts.h"
#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "foundation/MoneyFormat.h"
#include "foundation/ShortDatePicture.h"
#include "support/Input.h"
#include "support/Require.h"
#include <array>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>

namespace Tallymoor::Fuzz {
namespace {

constexpr std::array<const char*, 12> LOCALES{"en_AU", "en_US", "de_DE", "de_CH", "fr_FR", "sv_SE",
                                              "pl_PL", "ja_JP", "ar_EG", "hi_IN", "pt_BR", "C"};
constexpr std::array<int, 5> FORMATS{DATE_DISPLAY_DMY, DATE_DISPLAY_DMY2, DATE_DISPLAY_MDY, DATE_DISPLAY_YMD,
                                     DATE_DISPLAY_MIDDATE1};

// --- Dates

bool isInCalendar(const Date& date) {
  return date.year() >= 1 && date.year() <= 9999 && date.month() >= 1 && date.month() <= 12 &&
         date.day() >= 1 && date.day() <= date.daysThisMonth();
}

/// The year has two digits in this format, which is ambiguous for some years.
bool hasRoomFor(int format, const Date& date) {
  return format != DATE_DISPLAY_MIDDATE1 || (date.year() >= 1970 && date.year() <= 2069);
}

void checkTexts(const Date& date) {
  for (const int format : FORMATS)
    if (hasRoomFor(format, date))
      require(Date(date.toString(format), format) == date, "a date is read from its own text");
}

void checkCalendar(const Date& date, std::int32_t days, std::int32_t months) {
  require(isInCalendar(date), "a date lies in the calendar");
  require(Date(date.year(), date.month(), date.day()) == date, "a date is made of its own parts");
  const Date other = date.plusDays(days);
  require(isInCalendar(other), "a date moved by days lies in the calendar");
  const std::int64_t moved = other.daysSince(date);
  require(days >= 0 ? moved >= 0 && moved <= days : moved <= 0 && moved >= days,
          "a date moves its way and no further");
  if (moved == days)
    require(other.plusDays(static_cast<int>(-moved)) == date, "a date moved to and fro is the same");
  const Date later = date.plusMonths(months);
  require(isInCalendar(later), "a date moved by months lies in the calendar");
  require(later.day() <= date.day() || later.year() == 1 || later.year() == 9999,
          "a date moved by months is no later in its month");
  if (date.year() > 1) {
    require(date.lastFriday() < date && date.lastFriday().dayOfWeek() == 5,
            "the last Friday lies before the date");
    require(date.fridayBeforeLastWeekend().dayOfWeek() == 5, "the Friday before last weekend is a Friday");
  }
  require(date.lastDayOfMonth().day() == date.daysThisMonth(), "the last day of a month is its length");
}

void checkDateText(const String& text, int format) {
  Date date(2026, 3, 3);
  try {
    date.fromString(text, format);
  } catch (const Exception&) {
    return require(date == Date(2026, 3, 3), "a text that is no date leaves the date as it was");
  }
  require(isInCalendar(date), "what was read lies in the calendar");
  checkTexts(date);
}

/// True if every part of a date is separated from the others and complete in the picture.
bool tellsDatesApart(const String& picture) {
  String letters;
  for (const char16_t unit : picture) {
    const bool isPart = unit == u'd' || unit == u'M' || unit == u'y';
    letters.push_back(isPart ? unit : u'-');
    if (!isPart && !(unit == u'/' || unit == u'-' || unit == u'.' || unit == u' '))
      return false;
  }
  static const std::array<String, 8> KNOWN{u"d-M-yyyy",   u"dd-MM-yyyy", u"M-d-yyyy",  u"MM-dd-yyyy",
                                           u"yyyy-MM-dd", u"yyyy-M-d",   u"d-MM-yyyy", u"d--M--yyyy"};
  for (const String& known : KNOWN)
    if (letters == known)
      return true;
  return false;
}

void checkPicture(const ShortDatePicture& picture, const Date& date, const String& text) {
  Date read(2026, 3, 3);
  if (picture.parse(text, read))
    require(picture.format(read) == text, "a date was read from the text that it is written as");
  else
    require(read == Date(2026, 3, 3), "a text that is no date leaves the date as it was");
  const String own = picture.format(date);
  if (tellsDatesApart(picture.text()))
    require(picture.parse(own, read) && read == date, "a date is read from its own short form");
}

// --- Numbers

String printed(double value, int decimals) {
  std::array<char, 512> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
  return String::fromUTF8(buffer.data());
}

/// Compares with the C library. Only exact ties (rounded to even there) and minus zero may differ.
void checkAgainstLibrary(double value, int decimals) {
  const String ours = String::fromDouble(value, decimals);
  const String theirs = printed(value == 0.0 ? 0.0 : value, decimals);
  if (ours == theirs)
    return;
  const String exact = printed(value, 120);
  const std::size_t place = exact.find(u'.') + 1 + static_cast<std::size_t>(decimals);
  require(exact[place] == u'5' && exact.find_first_not_of(u'0', place + 1) == String::npos,
          "a number's text is that of the library but for ties");
}

void checkReal(double value) {
  if (!std::isfinite(value))
    return require(String::fromDouble(value, 2) == String(u"0.00"), "what is not finite is written as 0");
  for (const int decimals : {0, 2, 4}) {
    const String text = String::fromDouble(value, decimals);
    // The sign is lost if the value rounds to zero.
    require(String::fromDouble(text.toDouble(), decimals) == text || showsAsZero(value, decimals),
            "a number read from its own text is written the same");
    checkAgainstLibrary(value, decimals);
    require(showsTheSame(value, value, decimals), "a number shows the same as itself");
  }
  const String price = shortPriceText(value);
  require(price.toDouble() == String::fromDouble(value, 4).toDouble(), "a price in short is the same price");
  if (std::fabs(value) < 1e11)
    require(std::llabs(tenThousandths(value) - std::llround(value * 10000.0)) <= 1,
            "ten-thousandths are the nearest");
  else
    tenThousandths(value);
  require(String::toPercent(value).fromPercent() == String::fromDouble(value, 2).toDouble(),
          "a percentage is read from its own text");
}

/// Reads the text by every conversion.
void checkNumberText(const String& text) {
  const double real = text.toDouble();
  require(std::isfinite(real), "a text reads as a finite number");
  require(std::isfinite(text.toDoubleFiltered()) && std::isfinite(text.fromPercent()),
          "a text reads as a finite number");
  const std::int64_t whole = text.toLong64();
  require(String::fromLong(whole).toLong64() == whole, "a whole number is read from its own text");
  require(whole < INT32_MIN || whole > INT32_MAX || text.toLong() == whole,
          "a short whole number is the long one");
  String plain = text;
  String::removeCommas(plain);
  require(plain.toLong64() == whole && plain.toDouble() == real, "commas change no number");
  const String trimmed = text.trimmed();
  require(trimmed.trimmed() == trimmed && text.contains(trimmed),
          "a trimmed text is a part that can't be trimmed more");
  require(String::fromUTF8(text.toUTF8()).toUTF8() == text.toUTF8(), "a text is read from its own bytes");
  checkReal(real);
}

// --- Money

class Locale {
public:
  explicit Locale(const char* name) : m_money(name), m_picture(ShortDatePicture::ofLocale(name)) {
    // Yen have no decimals. The text of 0.5 shows how many the currency has.
    m_decimals = m_money.read(m_money.format(0.5)) == 0.5 ? 2 : 0;
  }

  void checkAmount(double value) const {
    if (!std::isfinite(value) || std::fabs(value) > 1e13)
      return static_cast<void>(m_money.format(value));
    const String text = m_money.format(value);
    require(!text.empty(), "an amount has a form");
    const double amount = m_money.read(text);
    require(showsTheSame(amount, String::fromDouble(value, 2).toDouble(), 2) || m_decimals == 0,
            "an amount is read from its own form");
    require(std::fabs(amount - value) <= (m_decimals == 0 ? 0.51 : 0.0051) + std::fabs(value) * 1e-15,
            "an amount is read from its own form as near as it shows");
    require(m_money.format(amount) == text, "an amount read from its own form has the same form");
  }

  void checkTyped(const String& text) const {
    const double amount = m_money.read(text);
    require(std::isfinite(amount), "a text reads as a finite amount");
    checkAmount(amount);
  }

  const ShortDatePicture& picture() const { return m_picture; }

private:
  MoneyFormat m_money;
  ShortDatePicture m_picture;
  int m_decimals;
};

const Locale& localeAt(std::size_t index) {
  static std::array<std::unique_ptr<const Locale>, LOCALES.size()> made;
  if (!made[index])
    made[index] = std::make_unique<Locale>(LOCALES[index]);
  return *made[index];
}

void check(Input& input) {
  const std::uint8_t choice = input.byte();
  const Locale& locale = localeAt(choice % LOCALES.size());
  const std::int64_t first = input.number64();
  const std::int64_t second = input.number64();
  const double real = input.real();
  const String dateText = input.text();
  const String numberText = input.text();
  const String pictureText = input.text();

  const Date date(static_cast<std::int32_t>(first), static_cast<std::int32_t>(first >> 32),
                  static_cast<std::int32_t>(second));
  checkCalendar(date, static_cast<std::int32_t>(second >> 32), static_cast<std::int32_t>(second >> 20));
  checkTexts(date);
  checkDateText(dateText, FORMATS[choice % FORMATS.size()]);
  checkPicture(locale.picture(), date, dateText);
  checkPicture(ShortDatePicture(pictureText), date, dateText);

  checkReal(real);
  checkNumberText(numberText);
  require(String::fromLong(first).toLong64() == first, "a whole number is read from its own text");
  locale.checkAmount(real);
  locale.checkAmount(static_cast<double>(first) / 1000.0);
  locale.checkTyped(numberText);
}

} // namespace
} // namespace Tallymoor::Fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Tallymoor::Fuzz;
  Input input(data, size);
  check(input);
  return 0;
}
