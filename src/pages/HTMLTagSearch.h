#pragma once
#include "pages/HTMLTag.h"
#include <cstdint>
#include <functional>
#include <vector>

namespace Tallymoor {

/// The tags below one tag, for searches and counts. A tag can be found under many parents, so a plain
/// recursion would take exponential time on nested tags of one name; here every tag is looked at once.
class HTMLTagSearch {
public:
  /// The tag's page must outlive the search.
  explicit HTMLTagSearch(const HTMLTag& start);

  /// The number of different tags that can be reached from the start, the start included.
  std::size_t numTags() const { return m_numTags; }
  /// The tag that a recursion in document order, the start itself first, would meet first among those that
  /// match; null when none does.
  const HTMLTag* first(const std::function<bool(const HTMLTag&)>& matches) const;

private:
  bool isReached(std::uint32_t tag) const { return m_reached[tag - m_start]; }
  void reach(std::uint32_t tag);

  const std::vector<HTMLTag>& m_tags;
  const std::uint32_t m_start;
  std::vector<bool> m_reached; ///< by index less m_start: nothing below a tag has a smaller index
  std::size_t m_numTags = 0;
};

} // namespace Tallymoor
