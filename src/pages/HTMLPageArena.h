#pragma once
#include "pages/HTMLTag.h"
#include <deque>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Tallymoor {

/// Everything that a parsed page consists of: its tags in the order of their opening, and the texts they
/// refer to. Filled by the parser, constant afterwards. A tag is addressed by its index here while the page
/// is read, since the tags may still move; by pointer afterwards.
///
/// The structure is a forest by HTMLTag::m_previous: each tag but the first was put behind one other, and any
/// list of sub tags is a run along that forest. An index grows along every run.
struct HTMLPageArena {
  /// Different names of tags: more than any honest page has. The bound keeps the table of them within the
  /// processor's caches, and short where they were chosen to meet in one place of it.
  static constexpr std::size_t MOST_NAMES = 4096;

  explicit HTMLPageArena(String page);

  /// To be called once all tags are there: makes the lists of what was put behind each tag.
  void linkFollowers();
  /// The tag that comes after this one on the run that ends at last, which must not be this one.
  std::uint32_t follower(std::uint32_t tag, std::uint32_t last) const;

  const String page;
  std::deque<std::u16string> kept; ///< names and texts that are no part of the page's text
  std::pmr::monotonic_buffer_resource memory;
  std::pmr::unordered_map<std::u16string_view, std::uint32_t> names{&memory}; ///< see HTMLName
  std::vector<HTMLTag> tags;
  /// For each tag, how many were put behind it; once linked, where these end in followers.
  std::vector<std::uint32_t> followersEnd;
  /// Grouped by the tag that they were put behind, rising in each group.
  std::vector<std::uint32_t> followers;
};

} // namespace Tallymoor
