#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Tallymoor::Fuzz {

/// Takes the bytes of one input apart, from the front. Behind the end everything is 0 or empty.
class Input {
public:
  Input(const std::uint8_t* data, std::size_t size)
      : m_left(reinterpret_cast<const char*>(data), data == nullptr ? 0 : size) {}

  std::uint8_t byte();
  /// A choice from 0 to count - 1, by a letter or digit as well as by any other byte.
  std::size_t choice(std::size_t count) { return byte() % count; }
  std::int64_t number64();
  std::int32_t number32() { return static_cast<std::int32_t>(number64()); }
  double real();
  /// The bytes up to the next line feed, which goes too.
  std::string_view line();
  std::string_view rest() const { return m_left; }

  /// A line as text, read as the bytes of a page are.
  String text() { return String::fromUTF8(line()); }

private:
  std::string_view m_left;
};

} // namespace Tallymoor::Fuzz
