#pragma once
#include "pages/HTMLPageArena.h"
#include <array>
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
/// that the arena knows by its end, and each name knows its last unclosed entry.
class HTMLFlatList {
public:
  explicit HTMLFlatList(HTMLPageArena& arena) : m_arena(arena) {}

  /// The name as it stands in the page, in any case. Throws HTMLException "HTMLParser::Parse - too many
  /// different tag names" for one beyond the arena's MOST_NAMES.
  HTMLName& named(std::u16string_view name);

  /// Appends a new tag, unclosed. Its attributes begin at that place of the page.
  void open(HTMLName& name, std::size_t attributes);
  /// The last tag's attributes end at that place, perhaps with "/>", which closes it.
  void endAttributes(std::size_t end, bool isClosing);
  /// A closing tag; one that closes nothing changes nothing.
  void close(HTMLName& name);
  /// The last tag takes it unless it has a text or sub tags already. It must live as long as the arena.
  void offerText(std::u16string_view text);

  /// Sets the parents of the tags that are still in the list; to be called once, at the end of the page.
  void finish();
  /// The first tag in the list with that name, or null.
  const HTMLTag* firstNamed(const HTMLName& name) const;

private:
  static constexpr std::size_t RECENT = 256;
  struct Entry {
    std::uint32_t tag;
    std::uint32_t previousOpen; ///< where the last unclosed entry of this name was when this one came
    std::uint32_t closingOrder; ///< number of the closing tag that closed it, from 1; 0 if it is open
  };

  HTMLName& lookUp(std::u16string_view name);
  HTMLTag& tagOf(const Entry& entry) const { return m_arena.tags[entry.tag]; }

  HTMLPageArena& m_arena;
  std::vector<Entry> m_entries;
  std::uint32_t m_numClosings = 0;
  std::array<HTMLName*, RECENT> m_recent{}; ///< the name met last for each value of a quick hash
};

} // namespace Tallymoor
