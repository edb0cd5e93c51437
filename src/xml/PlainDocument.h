#pragma once
#include "foundation/Date.h"
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Tallymoor {

/// Walks through a document that is expected to stand in the very form in which the program writes it.
/// Whatever is not as expected makes it fail for good; who reads by it then reads by elements.
class PlainDocument {
public:
  explicit PlainDocument(std::string_view document) : m_rest(document) {}

  bool failed() const { return m_failed; }
  void fail() { m_failed = true; }
  bool isAtEnd() const { return m_rest.empty(); }

  bool accept(std::string_view text) {
    if (!m_rest.starts_with(text))
      return false;
    m_rest.remove_prefix(text.size());
    return true;
  }
  bool startsWith(std::string_view text) const { return m_rest.starts_with(text); }
  void expect(std::string_view text) { m_failed |= !accept(text); }
  /// As far as the letters belong, at least one.
  template <class Belongs>
  std::string_view take(Belongs belongs) {
    const auto end = std::find_if_not(m_rest.begin(), m_rest.end(), belongs);
    const std::string_view taken = m_rest.substr(0, static_cast<std::size_t>(end - m_rest.begin()));
    m_failed |= taken.empty();
    m_rest.remove_prefix(taken.size());
    return taken;
  }
  /// A whole number without a sign or a zero before it.
  std::int32_t number(std::int32_t most) {
    std::int32_t value = 0;
    const auto read = std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), value);
    const auto length = static_cast<std::size_t>(read.ptr - m_rest.data());
    m_failed |=
        read.ec != std::errc() || value > most || m_rest[0] == '-' || (m_rest[0] == '0' && length > 1);
    m_rest.remove_prefix(length);
    return value;
  }
  /// An element of a day that is in each month, or one of the last few that comes back the same.
  std::optional<Date> dayElement() {
    constexpr int FIRST_YEAR = 1900, LAST_YEAR = 2199;
    expect("<Date>");
    const std::int32_t day = number(31);
    expect("/");
    const std::int32_t month = number(12);
    expect("/");
    const std::int32_t year = number(LAST_YEAR);
    expect("</Date>");
    if (m_failed || day < 1 || month < 1 || year < FIRST_YEAR)
      return std::nullopt;
    const Date date(year, month, day);
    return day <= 28 || date.day() == day ? std::optional(date) : std::nullopt;
  }

private:
  std::string_view m_rest;
  bool m_failed = false;
};

} // namespace Tallymoor
