#pragma once
#include "market/HTMLTag.h"
#include <cstddef>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace Tallymoor {

/// Everything that a parsed page consists of: its tags in the order of their opening, and the texts they
/// refer to. Filled by the parser, constant afterwards. A tag is addressed by its index here while the page
/// is read, since the tags may still move; by pointer afterwards.
///
/// The structure is a forest by HTMLTag::m_previous: each tag was put behind one other (or none), and any
/// list of sub tags is a run along that forest. An index grows along every run.
class HTMLPageArena {
public:
  explicit HTMLPageArena(std::size_t expectedTags);
  HTMLPageArena(const HTMLPageArena&) = delete;
  HTMLPageArena& operator=(const HTMLPageArena&) = delete;

  std::uint32_t size() const { return static_cast<std::uint32_t>(m_tags.size()); }
  HTMLTag& operator[](std::uint32_t index) { return m_tags[index]; }
  const HTMLTag& operator[](std::uint32_t index) const { return m_tags[index]; }
  std::uint32_t indexOf(const HTMLTag* tag) const { return static_cast<std::uint32_t>(tag - m_tags.data()); }

  // --- Filling
  // ------------------------------------------------------------------------------------------------------

  /// The index of a new tag, put behind the given one (HTMLTag::NONE for none).
  std::uint32_t addTag(std::u16string_view name, std::uint32_t previous, std::uint32_t position);
  /// A copy that lives as long as the arena.
  std::u16string_view keep(std::u16string_view text);
  /// Sorts by name, keeps the first of those with one name, and gives them to the tag.
  void setAttributes(std::uint32_t tag, std::vector<HTMLTag::Attribute>& attributes);
  /// To be called once all tags are there: makes the lists of what was put behind each tag.
  void linkFollowers();

  // --- Reading
  // ------------------------------------------------------------------------------------------------------

  /// The tag that comes after this one on the run that ends at last, which must not be this one.
  std::uint32_t follower(std::uint32_t tag, std::uint32_t last) const;

private:
  std::pmr::monotonic_buffer_resource m_texts;
  std::vector<HTMLTag> m_tags;
  std::vector<std::uint32_t>
      m_followers; ///< grouped by the tag that they were put behind, ascending in each group
};

} // namespace Tallymoor
