#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace Tallymoor {

struct HTMLAttribute;
class HTMLPageArena;

/// One tag of a parsed page. Made by HTMLParser only, lives in the page's arena as long as any HTMLPage of
/// that page, and never changes. Failures are HTMLException.
///
/// Sub tags are not held as lists of their own, because a tag may be found under many parents and the lists
/// of a deeply nested page would have quadratic length. While a page was read, each tag was put behind
/// exactly one other tag; the sub tags of a tag are the run of tags from the one behind it to the one that
/// was last when it was closed. So three numbers are enough for any list: see previous, lastSub and position.
class HTMLTag {
public:
  HTMLTag(const HTMLTag&) = delete;
  HTMLTag& operator=(const HTMLTag&) = delete;
  HTMLTag(HTMLTag&&) = default;

  /// Lower case.
  String name() const { return String(nameView()); }
  /// The text found just before a closing tag, raw; empty if none.
  String text() const { return String(textView()); }
  /// The tag that collected this one last; null for a tag that was never collected.
  const HTMLTag* parent() const;
  /// True when the tag was ended by "/>" or by its closing tag.
  bool isClosed() const { return m_closed; }

  // The same as name and text without a copy; valid as long as the page.
  std::u16string_view nameView() const { return {m_name, m_nameLength}; }
  std::u16string_view textView() const { return {m_text, m_textLength}; }

  std::size_t numAttributes() const { return m_numAttributes; }
  bool hasAttr(std::u16string_view name) const { return findAttribute(name) != nullptr; }
  /// Throws "HTMLTag::attrVal - not found attr: " and the name.
  String attrVal(std::u16string_view name) const;
  /// Name and value at the index in the order of the names; throws "HTMLTag::attribute - bad index".
  std::pair<String, String> attribute(std::size_t index) const;

  /// Length of the whole page's text.
  std::size_t pageSize() const;

  std::size_t numSubTags() const;
  /// The number of different tags in the subtree, this one included.
  std::size_t countTags() const;
  /// First sub tag with that name. Throws "HTMLTag::subTag - no sub tags" or
  /// "HTMLTag::subTag - sub tag not found : " and the name.
  const HTMLTag& subTag(std::u16string_view name) const;

  /// The first sub tag, or null.
  const HTMLTag* firstSubTag() const;
  /// The sub tag of this one that follows the given sub tag of it, or null.
  const HTMLTag* nextSubTag(const HTMLTag* subTag) const;

private:
  friend class HTMLFlatList;
  friend class HTMLPageArena;
  friend class HTMLTagSearch;

  static constexpr std::uint32_t NONE = 0xFFFFFFFF;
  explicit HTMLTag(const HTMLPageArena& arena) : m_arena(&arena) {}
  const HTMLAttribute* findAttribute(std::u16string_view name) const;
  std::uint32_t index() const;

  const HTMLPageArena* m_arena;
  const char16_t* m_name = nullptr;
  const char16_t* m_text = nullptr;
  std::uint32_t m_nameLength = 0;
  std::uint32_t m_textLength = 0;
  std::uint32_t m_firstAttribute = 0; ///< in the arena's list, sorted by name from here
  std::uint32_t m_numAttributes = 0;
  std::uint32_t m_parent = NONE;
  std::uint32_t m_previous = NONE;   ///< the tag that this one was put behind
  std::uint32_t m_lastSub = NONE;    ///< end of the run of sub tags; NONE without sub tags
  std::uint32_t m_position = 0;      ///< number of tags before this one in the run that leads to it
  std::uint32_t m_firstFollower = 0; ///< in the arena's list of tags put behind this one
  std::uint32_t m_numFollowers = 0;
  bool m_closed = false;
};

} // namespace Tallymoor
