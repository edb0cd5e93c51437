#pragma once
#include "market/HTMLTag.h"
#include <cstddef>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace Tallymoor {

/// A name and value of a tag, as places in the page's text.
struct HTMLAttribute {
  std::uint32_t name;
  std::uint32_t nameLength;
  std::uint32_t value;
  std::uint32_t valueLength;
};

/// Everything that a parsed page consists of: its tags in the order of their opening, and the texts they
/// refer to. Filled by the parser, constant afterwards. A tag is addressed by its index here while the page
/// is read, since the tags may still move; by pointer afterwards.
///
/// The structure is a forest by HTMLTag::m_previous: each tag was put behind one other (or none), and any
/// list of sub tags is a run along that forest. An index grows along every run.
class HTMLPageArena {
public:
  explicit HTMLPageArena(String page);
  HTMLPageArena(const HTMLPageArena&) = delete;
  HTMLPageArena& operator=(const HTMLPageArena&) = delete;

  /// The whole text. Names, texts and attributes are parts of it where they can be.
  const String& page() const { return m_page; }
  std::uint32_t size() const { return static_cast<std::uint32_t>(m_tags.size()); }
  HTMLTag& operator[](std::uint32_t index) { return m_tags[index]; }
  const HTMLTag& operator[](std::uint32_t index) const { return m_tags[index]; }
  std::uint32_t indexOf(const HTMLTag* tag) const { return static_cast<std::uint32_t>(tag - m_tags.data()); }

  // --- Filling

  /// The index of a new tag, put behind the given one (HTMLTag::NONE for none).
  std::uint32_t addTag(std::u16string_view name, std::uint32_t previous, std::uint32_t position);
  /// A copy that lives as long as the arena, for what is no part of the page's text.
  std::u16string_view keep(std::u16string_view text);
  /// Adds an attribute to the newest tag. False for one with the name of the attribute before it, which is
  /// left out at once: the first of those with one name is kept.
  bool addAttribute(const HTMLAttribute& attribute);
  /// Sorts the attributes added since the tag by name and keeps the first of those with one name.
  void endAttributes(std::uint32_t tag);
  /// To be called once all tags are there: makes the lists of what was put behind each tag.
  void linkFollowers();

  // --- Reading

  const HTMLAttribute* attributes(const HTMLTag& tag) const {
    return m_attributes.data() + tag.m_firstAttribute;
  }
  std::u16string_view nameOf(const HTMLAttribute& attribute) const {
    return {m_page.data() + attribute.name, attribute.nameLength};
  }
  std::u16string_view valueOf(const HTMLAttribute& attribute) const {
    return {m_page.data() + attribute.value, attribute.valueLength};
  }
  /// The tag that comes after this one on the run that ends at last, which must not be this one.
  std::uint32_t follower(std::uint32_t tag, std::uint32_t last) const;

private:
  const String m_page;
  std::pmr::monotonic_buffer_resource m_texts;
  std::vector<HTMLAttribute> m_attributes; ///< grouped by tag
  std::vector<HTMLTag> m_tags;
  /// Grouped by the tag that they were put behind, ascending in each group.
  std::vector<std::uint32_t> m_followers;
};

} // namespace Tallymoor
