#include "foundation/String.h"
#include "foundation/Exception.h"
#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <unicode/uchar.h>
#include <unicode/ustring.h>

namespace Tallymoor {

namespace {

constexpr UChar32 REPLACEMENT_CHARACTER = 0xFFFD;
constexpr std::size_t BYTES_PER_UNIT = 3; ///< At most, in UTF-8.
/// Enough decimals to round any double, and few enough for a buffer on the stack.
constexpr int MOST_DECIMALS = 100;

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isAscii(const String& text) {
  return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// ICU has 32-bit sizes and rejects negative ones.
std::int32_t sizeOf(std::size_t size) {
  return size > std::numeric_limits<std::int32_t>::max() ? std::numeric_limits<std::int32_t>::min()
                                                         : static_cast<std::int32_t>(size);
}

/// False if the bytes are not valid UTF-8.
bool decodeUTF8(std::string_view bytes, String& text) {
  text.resize(bytes.size()); // Each byte gives at most one unit.
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(text.data(), sizeOf(text.size()), &length, bytes.data(), sizeOf(bytes.size()), &status);
  if (U_FAILURE(status))
    return false;
  text.resize(static_cast<std::size_t>(length));
  return true;
}

/// The part of a text that can hold a number: without commas and leading blanks, up to the first non-ASCII
/// unit.
std::string numberText(const String& text) {
  std::string result;
  result.reserve(text.size());
  bool leading = true;
  for (const char16_t unit : text) {
    if (unit == u',' || (leading && u_isUWhiteSpace(unit)))
      continue;
    if (unit >= 0x80)
      break;
    leading = false;
    result.push_back(static_cast<char>(unit));
  }
  return result;
}

/// True if the value lies exactly between two neighbours at this number of decimals. That is so only if its
/// lowest binary digit is worth half a unit of 2^-decimals.
bool isTie(double magnitude, int decimals) {
  const std::uint64_t bits = std::bit_cast<std::uint64_t>(magnitude);
  const int biased = static_cast<int>(bits >> 52);
  const std::uint64_t fraction = bits & ((std::uint64_t{1} << 52) - 1);
  const std::uint64_t significand = biased == 0 ? fraction : fraction | (std::uint64_t{1} << 52);
  const int exponent = std::max(biased, 1) - 1075;
  return significand != 0 && exponent + std::countr_zero(significand) == -(decimals + 1);
}

/// Adds one to the last digit of a decimal text, with carry.
void incrementLastPlace(std::string& digits) {
  for (auto place = digits.rbegin(); place != digits.rend(); ++place) {
    if (*place == '.')
      continue;
    if (*place != '9') {
      ++*place;
      return;
    }
    *place = '0';
  }
  digits.insert(digits.begin(), '1');
}

/// Rounds a tie away from zero. The text has one more decimal, which is exact and ends in 5.
String roundedTie(bool negative, const char* first, const char* last) {
  std::string digits(first, last - 1);
  if (digits.back() == '.')
    digits.pop_back();
  incrementLastPlace(digits);
  return (negative ? String(u"-") : String()) + String(String::Base(digits.begin(), digits.end()));
}

std::int64_t readInteger(const char* first, const char* last) {
  std::int64_t value = 0;
  if (std::from_chars(first, last, value).ec == std::errc::result_out_of_range)
    return *first == '-' ? std::numeric_limits<std::int64_t>::min()
                         : std::numeric_limits<std::int64_t>::max();
  return value;
}

template <typename Mapping>
String mapUnits(const String& text, Mapping mapping) {
  String result = text;
  for (char16_t& unit : result) {
    const UChar32 mapped = mapping(static_cast<UChar32>(unit));
    if (mapped >= 0 && mapped <= 0xFFFF)
      unit = static_cast<char16_t>(mapped);
  }
  return result;
}

} // namespace

String::String(const char16_t* text) {
  if (text)
    assign(text);
}

String::String(const char* utf8) {
  if (utf8)
    *this = fromUTF8(utf8);
}

String String::fromUTF8(std::string_view utf8) {
  String text;
  if (isAscii(utf8) || !decodeUTF8(utf8, text)) // Invalid UTF-8 is read as Latin-1, one unit per byte.
    text.assign(reinterpret_cast<const unsigned char*>(utf8.data()),
                reinterpret_cast<const unsigned char*>(utf8.data()) + utf8.size());
  return text;
}

std::string String::toUTF8() const {
  if (isAscii(*this))
    return std::string(begin(), end());
  std::string result(BYTES_PER_UNIT * size(), '\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(result.data(), sizeOf(result.size()), &length, data(), sizeOf(size()),
                     REPLACEMENT_CHARACTER, nullptr, &status);
  if (U_FAILURE(status))
    throw Exception(u"String::toUTF8() - the text is too long");
  result.resize(static_cast<std::size_t>(length));
  return result;
}

std::string String::toLatin1() const {
  std::string result(size(), '\0');
  std::transform(begin(), end(), result.begin(),
                 [](char16_t unit) { return unit > 0xFF ? '?' : static_cast<char>(unit); });
  return result;
}

std::int64_t String::toLong64() const {
  const std::string text = numberText(*this);
  const char* first = text.data();
  const char* last = first + text.size();
  if (first != last && *first == '+') {
    ++first;
    if (first != last && *first == '-')
      return 0;
  }
  return readInteger(first, last);
}

std::int32_t String::toLong() const {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(toLong64(), Limits::min(), Limits::max()));
}

String String::fromLong(std::int64_t value) {
  char buffer[24];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
  return Base(buffer, end);
}

double String::toDouble() const {
  const std::string text = numberText(*this);
  const char* first = text.data();
  const char* last = first + text.size();
  const bool negative = first != last && *first == '-';
  if (first != last && (*first == '-' || *first == '+'))
    ++first;
  // std::from_chars would accept "inf" and "nan".
  if (first == last || !(isDigit(*first) || *first == '.'))
    return 0.0;
  double value = 0.0;
  if (std::from_chars(first, last, value, std::chars_format::general).ec != std::errc())
    return 0.0;
  return negative ? -value : value;
}

String String::fromDouble(double value, int decimals) {
  const int places = std::clamp(decimals, 0, MOST_DECIMALS);
  const double magnitude = std::isfinite(value) ? std::fabs(value) : 0.0;
  const bool negative = magnitude != 0.0 && std::signbit(value);
  char buffer[std::numeric_limits<double>::max_exponent10 + MOST_DECIMALS + 8];
  const bool tie = isTie(magnitude, places);
  const char* end = std::to_chars(buffer + 1, buffer + sizeof buffer, magnitude, std::chars_format::fixed,
                                  tie ? places + 1 : places)
                        .ptr;
  if (tie)
    return roundedTie(negative, buffer + 1, end);
  buffer[0] = '-';
  const char* begin = negative ? buffer : buffer + 1;
  return Base(begin, end);
}

String String::toPercent(double value) {
  return appendPercent(fromDouble(value, 2));
}

String String::appendPercent(const String& text) {
  return text + u'%';
}

double String::fromPercent() const {
  if (!empty() && back() == u'%')
    return String(substr(0, size() - 1)).toDouble();
  return toDouble();
}

double String::toDoubleFiltered() const {
  String filtered;
  for (const char16_t unit : *this)
    if ((unit >= u'0' && unit <= u'9') || unit == u'-' || unit == u'.' || unit == u'+')
      filtered.push_back(unit);
  return filtered.toDouble();
}

void String::removeCommas(String& text) {
  std::erase(text, u',');
}

String String::toLower() const {
  return mapUnits(*this, u_tolower);
}

String String::toUpper() const {
  return mapUnits(*this, u_toupper);
}

String String::trimmed() const {
  const auto first = std::find_if_not(begin(), end(), u_isUWhiteSpace);
  const auto last = std::find_if_not(rbegin(), std::make_reverse_iterator(first), u_isUWhiteSpace).base();
  return Base(first, last);
}

String operator+(const String& left, const String& right) {
  return left + static_cast<const String::Base&>(right);
}

String operator+(const String& left, const String::Base& right) {
  String result;
  result.reserve(left.size() + right.size());
  return result.append(left).append(right);
}

String operator+(const String::Base& left, const String& right) {
  return String(left) + static_cast<const String::Base&>(right);
}

String operator+(const String& left, const char16_t* right) {
  String result = left;
  if (right)
    result.append(right);
  return result;
}

String operator+(const char16_t* left, const String& right) {
  return String(left) + right;
}

String operator+(const String& left, const char* right) {
  return left + String(right);
}

String operator+(const String& left, char16_t right) {
  String result = left;
  result.push_back(right);
  return result;
}

bool operator==(const String& left, const String& right) {
  return std::u16string_view(left) == std::u16string_view(right);
}

bool operator==(const String& left, const String::Base& right) {
  return std::u16string_view(left) == std::u16string_view(right);
}

bool operator==(const String& left, const char16_t* right) {
  return std::u16string_view(left) == (right ? std::u16string_view(right) : std::u16string_view());
}

} // namespace Tallymoor
