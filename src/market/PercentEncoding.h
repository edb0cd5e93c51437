#pragma once
#include <string>
#include <string_view>

namespace Tallymoor {

/// The text with each byte that mustBeEncoded picks replaced by "%" and two upper-case hexadecimal digits.
template <class Predicate>
std::string percentEncoded(std::string_view bytes, Predicate mustBeEncoded) {
  static constexpr char DIGITS[] = "0123456789ABCDEF";
  std::string encoded;
  encoded.reserve(bytes.size());
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (mustBeEncoded(byte)) {
      encoded += '%';
      encoded += DIGITS[byte >> 4];
      encoded += DIGITS[byte & 0xF];
    } else {
      encoded += character;
    }
  }
  return encoded;
}

} // namespace Tallymoor
