#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

namespace Tallymoor {

struct HTMLPageArena;

/// A name of tags, lower case. While the page is read: the place of the last unclosed tag of this name in the
/// flat list, or NONE.
using HTMLName = std::pair<const std::u16string_view, std::uint32_t>;

/// One tag of a parsed page. Made by HTMLParser only, lives in the page's arena as long as any HTMLPage of
/// that page, and never changes. Failures are HTMLException.
///
/// Sub tags are not held as lists of their own, because a tag may be found under many parents and the lists
/// of a deeply nested page would have quadratic length. While a page was read, each tag was put behind
/// exactly one other tag; the sub tags of a tag are the run of tags from the one behind it to the one that
/// was last when it was closed. So the end of the run is enough for any list.
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
  std::u16string_view nameView() const { return m_name->first; }
  std::u16string_view textView() const { return {m_text, m_textLength}; }

  bool hasAttr(std::u16string_view name) const { return findAttribute(name).has_value(); }
  /// Throws "HTMLTag::attrVal - not found attr: " and the name.
  String attrVal(std::u16string_view name) const;
  /// How many units of the page's text they take, which is what looking for one of them may cost.
  std::size_t attributesSize() const { return m_attributesSize; }
  /// All values by name: of several with one name the first. Read from the page's text with each call.
  std::map<String, String> attributes() const;

  /// Length of the whole page's text.
  std::size_t pageSize() const;

  std::size_t numSubTags() const;
  /// The number of different tags in the subtree, this one included.
  std::size_t countTags() const;
  /// First sub tag with that name. Throws "HTMLTag::subTag - no sub tags" or
  /// "HTMLTag::subTag - sub tag not found : " and the name.
  const HTMLTag& subTag(std::u16string_view name) const;

  /// The first sub tag, or null.
  const HTMLTag* firstSubTag() const { return nextSubTag(this); }
  /// The sub tag of this one that follows the given sub tag of it, or null.
  const HTMLTag* nextSubTag(const HTMLTag* subTag) const;

private:
  friend class HTMLReader;
  friend struct HTMLPageArena;
  friend class HTMLTagSearch;

  static constexpr std::uint32_t NONE = 0xFFFFFFFF;
  HTMLTag(const HTMLPageArena& arena, HTMLName& name, std::size_t attributes)
      : m_arena(&arena), m_name(&name), m_attributes(static_cast<std::uint32_t>(attributes)) {}
  std::optional<std::u16string_view> findAttribute(std::u16string_view name) const;
  std::uint32_t index() const;

  const HTMLPageArena* m_arena;
  HTMLName* m_name;
  const char16_t* m_text = nullptr;
  std::uint32_t m_textLength : 31 = 0;
  std::uint32_t m_closed : 1 = false;
  std::uint32_t m_attributes; ///< where they begin in the page's text
  std::uint32_t m_attributesSize = 0;
  std::uint32_t m_parent = NONE;
  std::uint32_t m_lastSub = NONE;        ///< end of the run of sub tags; NONE without sub tags
  std::uint32_t m_previous = NONE;       ///< the tag that this one was put behind
  std::uint32_t m_lastFollower = NONE;   ///< the last tag that was put behind this one
  std::uint32_t m_followerBefore = NONE; ///< the tag that was put behind the same tag before this one
};

} // namespace Tallymoor
