#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "foundation/UserInteraction.h"
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Tallymoor {

/// Reads the arguments of a step in order. Read them into variables before a call with several arguments,
/// because the order of evaluation is unspecified. The words must outlive this object.
class SequenceArguments {
public:
  /// The first word is the operation's name.
  explicit SequenceArguments(const std::vector<std::string>& words) : m_words(words) {}

  std::size_t count() const { return m_words.size() - 1; }
  bool atEnd() const { return m_next == m_words.size(); }
  String text() { return String::fromUTF8(m_words.at(m_next++)); }
  Date date() { return Date(text(), DATE_DISPLAY_DMY); }
  double number() { return text().toDouble(); }
  std::int32_t whole() { return text().toLong(); }
  /// "2", "5:2", or "cancel" for none.
  std::optional<WholeRatio> ratio() {
    const std::string word = m_words.at(m_next++);
    const std::size_t colon = word.find(':');
    if (word == "cancel")
      return std::nullopt;
    return WholeRatio{std::stoi(word), colon == std::string::npos ? 1 : std::stoi(word.substr(colon + 1))};
  }

private:
  const std::vector<std::string>& m_words;
  std::size_t m_next = 1;
};

} // namespace Tallymoor
