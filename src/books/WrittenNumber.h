#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Tallymoor {

/// A decimal number as it stands in a document, value and text in eight bytes: "12.30" and "12.3" are two of
/// them, and so are "0.00" and "-0.00". Any other text ("1e3", " 5") is kept elsewhere, and this is its
/// place.
class WrittenNumber {
public:
  static constexpr std::size_t LONGEST_TEXT = 24;

  /// "0"
  WrittenNumber() = default;

  /// Of a text with at most 15 digits, six of them behind the point, and no needless zero before it; nothing
  /// for any other.
  template <class Unit>
  static std::optional<WrittenNumber> of(std::basic_string_view<Unit> text);
  /// A text that is kept at this place.
  static WrittenNumber kept(std::size_t place) { return WrittenNumber(place, KEPT, false); }

  bool isKept() const { return decimals() == KEPT; }
  std::size_t keptPlace() const { return static_cast<std::size_t>(digits()); }
  /// Not of a kept one. Both sides of the division are whole numbers that a double holds, so the value is the
  /// double that is nearest to the text.
  double value() const {
    const double magnitude = static_cast<double>(digits()) / POWERS[decimals()];
    return isNegative() ? -magnitude : magnitude;
  }
  /// Writes the text, not of a kept one, and gives its end.
  char* write(char* out) const;

  bool operator==(const WrittenNumber&) const = default;

private:
  static constexpr unsigned MOST_DECIMALS = 6;
  static constexpr unsigned KEPT = 7;
  static constexpr std::size_t MOST_DIGITS = 15;
  static constexpr double POWERS[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};

  WrittenNumber(std::uint64_t digits, unsigned decimals, bool isNegative)
      : m_bits(digits << 4 | decimals << 1 | static_cast<unsigned>(isNegative)) {}
  bool isNegative() const { return m_bits & 1; }
  unsigned decimals() const { return m_bits >> 1 & 7; }
  std::uint64_t digits() const { return m_bits >> 4; }

  std::uint64_t m_bits = 0; ///< the digits, three bits for the number of decimals, one for the sign
};

template <class Unit>
std::optional<WrittenNumber> WrittenNumber::of(std::basic_string_view<Unit> text) {
  const bool isNegative = !text.empty() && text[0] == '-';
  text.remove_prefix(isNegative);
  std::uint64_t digits = 0;
  std::size_t point = text.size();
  for (std::size_t i = 0; i < text.size(); ++i)
    if (text[i] >= '0' && text[i] <= '9')
      digits = digits * 10 + static_cast<std::uint64_t>(text[i] - '0');
    else if (text[i] == '.' && point == text.size())
      point = i;
    else
      return std::nullopt;
  const bool hasPoint = point < text.size();
  const std::size_t decimals = hasPoint ? text.size() - point - 1 : 0;
  if (point == 0 || point + decimals > MOST_DIGITS || decimals > MOST_DECIMALS ||
      (hasPoint && decimals == 0) || (point > 1 && text[0] == '0'))
    return std::nullopt;
  return WrittenNumber(digits, static_cast<unsigned>(decimals), isNegative);
}

inline char* WrittenNumber::write(char* out) const {
  char text[LONGEST_TEXT];
  char* const end = text + sizeof text;
  char* first = end;
  std::uint64_t rest = digits();
  for (unsigned place = 0; rest > 0 || place <= decimals(); ++place, rest /= 10) {
    if (place == decimals() && place > 0)
      *--first = '.';
    *--first = static_cast<char>('0' + rest % 10);
  }
  if (isNegative())
    *--first = '-';
  return std::copy(first, end, out);
}

} // namespace Tallymoor
