#include "support/Input.h"
#include <algorithm>
#include <bit>

namespace Tallymoor::Fuzz {

std::uint8_t Input::byte() {
  if (m_left.empty())
    return 0;
  const auto first = static_cast<std::uint8_t>(m_left.front());
  m_left.remove_prefix(1);
  return first;
}

std::int64_t Input::number64() {
  std::uint64_t value = 0;
  for (int i = 0; i < 8; ++i)
    value = value << 8 | byte();
  return static_cast<std::int64_t>(value);
}

double Input::real() {
  return std::bit_cast<double>(number64());
}

std::string_view Input::line() {
  const std::size_t end = std::min(m_left.find('\n'), m_left.size());
  const std::string_view line = m_left.substr(0, end);
  m_left.remove_prefix(std::min(end + 1, m_left.size()));
  return line;
}

} // namespace Tallymoor::Fuzz
