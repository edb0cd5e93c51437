#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace Tallymoor {

/// The one text type: UTF-16 code units, ordered by plain numeric comparison of the units. All money, prices
/// and quantities become text and come back through the conversions here, never through the process's locale.
/// A plain value; not to be shared between threads without a copy.
class String : public std::basic_string<char16_t> {
public:
  using Base = std::basic_string<char16_t>;
  using Base::Base;

  String() = default;
  String(const Base& text) : Base(text) {}
  String(Base&& text) noexcept : Base(std::move(text)) {}
  /// Copies up to the terminating 0; a null pointer gives an empty text.
  String(const char16_t* text);
  /// Decodes UTF-8; bytes that are no valid UTF-8 make the whole text be read as Latin-1. Null gives an empty
  /// text.
  String(const char* utf8);

  /// As the constructor from const char*, for bytes of known length, which may hold NUL.
  static String fromUTF8(std::string_view utf8);

  /// Half a surrogate pair becomes U+FFFD. Throws Exception for a text of more than 2 GB in UTF-8.
  std::string toUTF8() const;
  /// One byte a unit; units above 0xFF become "?".
  std::string toLatin1() const;

  /// Commas are dropped, leading blanks and trailing junk ignored; unreadable gives 0, out of range
  /// saturates.
  std::int32_t toLong() const;
  std::int64_t toLong64() const;
  /// Base 10, without padding or separators.
  static String fromLong(std::int64_t value);

  /// Decimal syntax only, a point as decimal sign; commas are dropped; unreadable gives 0.0.
  double toDouble() const;
  /// Fixed notation without separators, rounded correctly from the binary value, exact ties away from zero.
  /// The sign is the value's, so -0.004 at two places is "-0.00", but -0.0 is "0.00". A value that is not
  /// finite reads as 0.
  static String fromDouble(double value, int decimals);

  /// "12.50%": two decimals.
  static String toPercent(double value);
  /// The text and a "%" behind it.
  static String appendPercent(const String& text);
  /// Reads a number with an optional "%" behind it; it is not divided by 100.
  double fromPercent() const;
  /// Reads what is left of the digits, "-", "+" and ".": for amounts with currency signs and separators.
  double toDoubleFiltered() const;

  /// Takes every "," out, in place.
  static void removeCommas(String& text);

  /// The base's, as a String.
  String substr(size_type position = 0, size_type count = npos) const {
    return Base::substr(position, count);
  }

  /// Independent of the locale: the simple case mapping of each unit.
  String toLower() const;
  String toUpper() const;
  /// Without white space at both ends.
  String trimmed() const;
  bool contains(const String& part) const { return find(part) != npos; }
  bool startsWith(const String& part) const { return compare(0, part.size(), part) == 0; }
};

String operator+(const String& left, const String& right);
String operator+(const String& left, const char16_t* right);
String operator+(const String& left, char16_t right);
bool operator==(const String& left, const String& right);

String operator+(const char16_t* left, const String& right);
/// The right side is read as the constructor from const char* reads it.
String operator+(const String& left, const char* right);

// Some inherited operations give a plain base text: these keep it from being ambiguous.
String operator+(const String& left, const String::Base& right);
String operator+(const String::Base& left, const String& right);
bool operator==(const String& left, const String::Base& right);
bool operator==(const String& left, const char16_t* right);

} // namespace Tallymoor
