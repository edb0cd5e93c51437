#pragma once
#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace Tallymoor {

/// The user's account sheet: every cash movement, in cents worked out by hand. Independent of the program
/// except for the texts expected there.
class Sheet {
public:
  struct Line {
    std::string date; ///< "31/12/2025".
    std::string text;
    std::int64_t cents; ///< Negative for payments.
  };

  void write(const std::string& date, const std::string& text, std::int64_t cents) {
    m_lines.push_back({date, text, cents});
    sort();
  }
  /// Replaces the line with this text.
  void correct(const std::string& text, const Line& line) {
    *find(text) = line;
    sort();
  }
  void strike(const std::string& text) { m_lines.erase(find(text)); }

  const std::vector<Line>& lines() const { return m_lines; }
  std::int64_t total() const { return totalUpTo("31/12/9999"); }
  std::int64_t totalUpTo(const std::string& date) const {
    std::int64_t sum = 0;
    for (const Line& line : m_lines)
      if (ordered(line.date) <= ordered(date))
        sum += line.cents;
    return sum;
  }

  /// "$1,234.50", "-$0.05".
  static std::string money(std::int64_t cents) {
    const std::int64_t size = cents < 0 ? -cents : cents;
    std::string dollars = std::to_string(size / 100);
    for (std::size_t at = dollars.size(); at > 3; at -= 3)
      dollars.insert(at - 3, ",");
    const std::string rest = std::to_string(size % 100 + 100).substr(1);
    return (cents < 0 ? "-$" : "$") + dollars + "." + rest;
  }
  /// Rows of a cash table: day, text, paid in, paid out, balance at the end of the day.
  std::vector<std::vector<std::string>> rows() const {
    std::vector<std::vector<std::string>> all;
    for (const Line& line : m_lines)
      all.push_back({line.date, line.text, line.cents > 0 ? money(line.cents) : "",
                     line.cents < 0 ? money(-line.cents) : "", money(totalUpTo(line.date))});
    return all;
  }

private:
  static std::string ordered(const std::string& date) {
    return date.substr(6) + date.substr(3, 2) + date.substr(0, 2);
  }
  void sort() {
    std::stable_sort(m_lines.begin(), m_lines.end(), [](const Line& left, const Line& right) {
      return ordered(left.date) < ordered(right.date);
    });
  }
  std::vector<Line>::iterator find(const std::string& text) {
    const auto found =
        std::find_if(m_lines.begin(), m_lines.end(), [&text](const Line& line) { return line.text == text; });
    if (found == m_lines.end())
      throw std::runtime_error("not on the sheet: " + text);
    return found;
  }

  std::vector<Line> m_lines; ///< Oldest first.
};

} // namespace Tallymoor
