#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace Tallymoor {

/// The program's text type: UTF-16 code units, compared numerically. All amounts, prices and quantities are
/// converted to and from text by these functions, which don't depend on the process's locale. Not
/// synchronised: copy it to share it between threads.
class String : public std::basic_string<char16_t> {
public:
  using Base = std::basic_string<char16_t>;
  using Base::Base;

  String() = default;
  String(const Base& text) : Base(text) {}
  String(Base&& text) noexcept : Base(std::move(text)) {}
  /// Copies a null-terminated text. A null pointer gives an empty text.
  String(const char16_t* text);
  /// Decodes UTF-8. If the bytes are not valid UTF-8, reads them as Latin-1. A null pointer gives an empty
  /// text.
  String(const char* utf8);

  /// Like the constructor from const char*, for bytes that may contain NUL.
  static String fromUTF8(std::string_view utf8);

  /// A lone surrogate becomes U+FFFD. Throws Exception if the result exceeds 2 GB.
  std::string toUTF8() const;
  /// One byte per unit; units above 0xFF become "?".
  std::string toLatin1() const;

  /// Ignores commas, leading blanks and trailing text. Returns 0 if there is no number; clamps to the range.
  std::int32_t toLong() const;
  std::int64_t toLong64() const;
  /// Decimal, without padding or separators.
  static String fromLong(std::int64_t value);

  /// Reads decimal notation with a point; ignores commas. Returns 0 if there is no number.
  double toDouble() const;
  /// Fixed notation without separators, correctly rounded; exact ties round away from zero. Keeps the sign:
  /// -0.004 with two decimals is "-0.00", but -0.0 is "0.00". A non-finite value gives the text of 0.
  static String fromDouble(double value, int decimals);

  /// "12.50%": two decimals.
  static String toPercent(double value);
  /// Appends "%".
  static String appendPercent(const String& text);
  /// Reads a number with an optional "%" after it. Does not divide by 100.
  double fromPercent() const;
  /// Reads the digits, "-", "+" and "." and ignores everything else. For amounts with currency symbols and
  /// separators.
  double toDoubleFiltered() const;

  /// Removes every "," in place.
  static void removeCommas(String& text);

  /// Hides the base's substr to return a String.
  String substr(size_type position = 0, size_type count = npos) const {
    return Base::substr(position, count);
  }

  /// Simple case mapping per code unit, independent of the locale.
  String toLower() const;
  String toUpper() const;
  /// Without leading and trailing white space.
  String trimmed() const;
  bool contains(const String& part) const { return find(part) != npos; }
  bool startsWith(const String& part) const { return compare(0, part.size(), part) == 0; }
};

String operator+(const String& left, const String& right);
String operator+(const String& left, const char16_t* right);
String operator+(const String& left, char16_t right);
bool operator==(const String& left, const String& right);

String operator+(const char16_t* left, const String& right);
/// Converts the right operand like the constructor from const char*.
String operator+(const String& left, const char* right);

// Overloads for the base type, which some inherited functions return. They prevent ambiguity.
String operator+(const String& left, const String::Base& right);
String operator+(const String::Base& left, const String& right);
bool operator==(const String& left, const String::Base& right);
bool operator==(const String& left, const char16_t* right);

} // namespace Tallymoor
