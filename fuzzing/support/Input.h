#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Tallymoor::Fuzz {

/// Splits an input from the front. After the end everything is 0 or empty.
class Input {
public:
  Input(const std::uint8_t* data, std::size_t size)
      : m_left(reinterpret_cast<const char*>(data), data == nullptr ? 0 : size) {}

  std::uint8_t byte();
  /// A choice from 0 to count - 1. Letters, digits and all other bytes are usable.
  std::size_t choice(std::size_t count) { return byte() % count; }
  std::int64_t number64();
  std::int32_t number32() { return static_cast<std::int32_t>(number64()); }
  double real();
  /// Removes and returns the bytes up to the next line feed.
  std::string_view line();
  std::string_view rest() const { return m_left; }

  /// A line decoded like the bytes of a page.
  String text() { return String::fromUTF8(line()); }

private:
  std::string_view m_left;
};

} // namespace Tallymoor::Fuzz
