#pragma once
#include <array>
#include <cstdint>
#include <string_view>

namespace Tallymoor {

/// A checksum of a text that can be put together from those of its parts, so that after a small change of a
/// long text only what has changed is read. It is made against accidents, not against forgers.
///
/// The bytes are the coefficients of a polynomial, whose value is taken at two places, each modulo 2^61 - 1.
/// Two texts of n bytes that have both values in common by chance are fewer than one in 2^122 / n^2.
class TextFingerprint {
public:
  static constexpr std::size_t PLACES = 2;

  /// Of an empty text.
  TextFingerprint() = default;
  explicit TextFingerprint(std::string_view text);

  /// Adds the text of another one behind this one's.
  void append(const TextFingerprint& other);

  const std::array<std::uint64_t, PLACES>& values() const { return m_values; }
  /// Bytes of the text.
  std::uint64_t length() const { return m_length; }

private:
  std::array<std::uint64_t, PLACES> m_values{};
  std::array<std::uint64_t, PLACES> m_powers{1, 1}; ///< of the places, with the length as exponent
  std::uint64_t m_length = 0;
};

} // namespace Tallymoor
