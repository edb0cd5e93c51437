#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Tallymoor {

class HTMLPageArena;

/// The tag names of a page, each known by a number, and for each where in the flat list it was met last.
class HTMLNames {
public:
  using Id = std::uint32_t;
  static constexpr std::uint32_t NOWHERE = 0xFFFFFFFF;
  struct Name {
    std::u16string_view text; ///< lower case, kept by the arena
    std::uint32_t last;       ///< place of the last entry with this name in the flat list, or NOWHERE
    std::uint32_t lastOpen;   ///< the same of the last unclosed one
  };

  explicit HTMLNames(HTMLPageArena& arena);

  /// More different names than any honest page has. The bound keeps the table of them within the processor's
  /// caches, and short where the names of a page were chosen to meet in one place of it.
  static constexpr std::size_t MOST = 16384;

  /// The number of a name as it stands in the page, in any case. Throws HTMLException "HTMLParser::Parse -
  /// too many different tag names" for one beyond MOST.
  Id find(std::u16string_view name);
  Name& operator[](Id id) { return m_names[id]; }

private:
  std::u16string_view folded(std::u16string_view name);
  Id lookUp(std::u16string_view folded);

  static constexpr std::size_t RECENT = 256;
  static constexpr Id NO_ID = 0xFFFFFFFF;

  HTMLPageArena& m_arena;
  std::vector<Name> m_names;
  std::unordered_map<std::u16string_view, Id> m_ids;
  std::array<Id, RECENT> m_recent; ///< the name met last for each value of a quick hash
  std::u16string m_folded;
};

} // namespace Tallymoor
