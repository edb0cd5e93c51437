#include "foundation/TextFingerprint.h"
#include <cstddef>

namespace Tallymoor {

namespace {

__extension__ using Wide = unsigned __int128;

constexpr int MODULUS_BITS = 61;
constexpr std::uint64_t MODULUS = (std::uint64_t{1} << MODULUS_BITS) - 1;
/// Drawn by lot. They stand in journals by what was computed with them, so they never change.
constexpr std::array<std::uint64_t, TextFingerprint::PLACES> PLACE{0x103ed6709979b927, 0x183b0f364f2165bd};
constexpr std::size_t AT_ONCE = 8; ///< bytes

/// Below 2^123.
constexpr std::uint64_t reduced(Wide number) {
  number = (number & MODULUS) + (number >> MODULUS_BITS);
  number = (number & MODULUS) + (number >> MODULUS_BITS);
  return number >= MODULUS ? static_cast<std::uint64_t>(number - MODULUS)
                           : static_cast<std::uint64_t>(number);
}

constexpr std::uint64_t product(std::uint64_t a, std::uint64_t b) {
  return reduced(static_cast<Wide>(a) * b);
}

/// The powers of a place from 0 to AT_ONCE.
constexpr std::array<std::uint64_t, AT_ONCE + 1> powersOf(std::uint64_t place) {
  std::array<std::uint64_t, AT_ONCE + 1> powers{1};
  for (std::size_t i = 1; i <= AT_ONCE; ++i)
    powers.at(i) = product(powers.at(i - 1), place);
  return powers;
}

struct ValueAndPower {
  std::uint64_t value = 0;
  std::uint64_t power = 1;
};

template <std::size_t Index>
ValueAndPower evaluate(std::string_view text) {
  static constexpr auto POWERS = powersOf(PLACE[Index]);
  const auto* byte = reinterpret_cast<const unsigned char*>(text.data());
  const auto* const end = byte + text.size();
  ValueAndPower result;
  for (; end - byte >= static_cast<std::ptrdiff_t>(AT_ONCE); byte += AT_ONCE) {
    Wide sum = static_cast<Wide>(result.value) * POWERS[AT_ONCE];
    for (std::size_t i = 0; i < AT_ONCE; ++i)
      sum += static_cast<Wide>(POWERS[AT_ONCE - 1 - i]) * byte[i];
    result.value = reduced(sum);
    result.power = product(result.power, POWERS[AT_ONCE]);
  }
  for (; byte != end; ++byte) {
    result.value = reduced(static_cast<Wide>(result.value) * POWERS[1] + *byte);
    result.power = product(result.power, POWERS[1]);
  }
  return result;
}

} // namespace

TextFingerprint::TextFingerprint(std::string_view text) : m_length(text.size()) {
  const ValueAndPower first = evaluate<0>(text);
  const ValueAndPower second = evaluate<1>(text);
  m_values = {first.value, second.value};
  m_powers = {first.power, second.power};
}

void TextFingerprint::append(const TextFingerprint& other) {
  for (std::size_t i = 0; i < PLACES; ++i) {
    m_values[i] = reduced(static_cast<Wide>(m_values[i]) * other.m_powers[i] + other.m_values[i]);
    m_powers[i] = product(m_powers[i], other.m_powers[i]);
  }
  m_length += other.m_length;
}

} // namespace Tallymoor
