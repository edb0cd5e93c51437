#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Tallymoor {

/// The arguments of a step, read in their order. Read them into variables before a call that takes several:
/// the order in which a call evaluates its own is not fixed. The words must outlive this object.
class SequenceArguments {
public:
  /// The first word names the operation.
  explicit SequenceArguments(const std::vector<std::string>& words) : m_words(words) {}

  std::size_t count() const { return m_words.size() - 1; }
  bool atEnd() const { return m_next == m_words.size(); }
  String text() { return String::fromUTF8(m_words.at(m_next++)); }
  Date date() { return Date(text(), DATE_DISPLAY_DMY); }
  double number() { return text().toDouble(); }
  std::int32_t whole() { return text().toLong(); }

private:
  const std::vector<std::string>& m_words;
  std::size_t m_next = 1;
};

} // namespace Tallymoor
