#pragma once
#include "market/HTMLNames.h"
#include "market/HTMLPageArena.h"
#include <cstdint>
#include <string_view>
#include <vector>

namespace Tallymoor {

/// The list of tags in the order of their opening from which a page's tree is made, while the page is read.
///
/// A closing tag takes everything behind the nearest unclosed tag of its name as that tag's sub tags. Then
/// entries are taken off the back of the list until the last one bears that name. That may be a closed tag
/// which was just taken: then it stays, with all before it, and a later closing tag takes these entries a
/// second time. So a tag may be found under two parents; the later one is its parent.
///
/// No entry is looked at to close a tag but those that are taken off for good: the list of sub tags is a run
/// that the arena knows by its end, and each name knows its last entry and its last unclosed entry.
class HTMLFlatList {
public:
  static constexpr std::uint32_t NONE = HTMLTag::NONE;

  HTMLFlatList(HTMLPageArena& arena, HTMLNames& names);

  bool empty() const { return m_entries.empty(); }
  /// Appends a new tag, unclosed, and returns its index in the arena.
  std::uint32_t open(HTMLNames::Id name);
  /// Marks the last tag as ended by "/>".
  void closeLast();
  /// A closing tag; one that closes nothing changes nothing.
  void close(HTMLNames::Id name);
  /// True when the last tag would take a text: it has no text and no sub tags yet.
  bool wantsText() const;
  /// The text must live as long as the arena.
  void setText(std::u16string_view text);

  /// Sets the parents of the tags that are still in the list; to be called once, at the end of the page.
  void finish();
  /// The first tag in the list with that name, or NONE.
  std::uint32_t firstNamed(HTMLNames::Id name) const;

private:
  struct Entry {
    std::uint32_t tag;
    HTMLNames::Id name;
    std::uint32_t previousOfName; ///< where the entry of this name before this one is
    std::uint32_t previousOpen;   ///< where the entry before that was unclosed when this one came
    std::uint32_t closingOrder;   ///< number of the closing tag that closed it, from 1; 0 for none
  };

  void dropLast(std::uint32_t newParent);

  HTMLPageArena& m_arena;
  HTMLNames& m_names;
  std::vector<Entry> m_entries;
  std::uint32_t m_numClosings = 0;
};

} // namespace Tallymoor
