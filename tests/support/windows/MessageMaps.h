#pragma once
#include <algorithm>
#include <cstring>
#include <dlfcn.h>
#include <fx.h>
#include <string>
#include <vector>

namespace Tallymoor::MessageMaps {

/// The toolkit keeps its class table and the maps to itself; naming a private member in an explicit
/// instantiation is the one place where the language lets us see it.
template <auto Member, class Tag>
struct Reveal {
  friend constexpr auto reveal(Tag) { return Member; }
};

struct Map {
  friend constexpr auto reveal(Map);
};
struct MapLength {
  friend constexpr auto reveal(MapLength);
};
struct EntrySize {
  friend constexpr auto reveal(EntrySize);
};
struct Classes {
  friend constexpr auto reveal(Classes);
};
struct ClassTableSize {
  friend constexpr auto reveal(ClassTableSize);
};

template struct Reveal<&FXMetaClass::assoc, Map>;
template struct Reveal<&FXMetaClass::nassocs, MapLength>;
template struct Reveal<&FXMetaClass::assocsz, EntrySize>;
template struct Reveal<&FXMetaClass::metaClassTable, Classes>;
template struct Reveal<&FXMetaClass::nmetaClassTable, ClassTableSize>;

/// Every map entry begins with the range of selectors that it answers.
struct Range {
  FXSelector low;
  FXSelector high;
};

inline std::vector<Range> rangesOf(const FXMetaClass& metaClass) {
  std::vector<Range> ranges(metaClass.*reveal(MapLength()));
  const auto* entry = static_cast<const char*>(metaClass.*reveal(Map()));
  for (Range& range : ranges) {
    std::memcpy(&range, entry, sizeof range);
    entry += metaClass.*reveal(EntrySize());
  }
  return ranges;
}

/// The second of two rows for one selector never gets a message.
inline bool hasDuplicates(const FXMetaClass& metaClass) {
  const std::vector<Range> ranges = rangesOf(metaClass);
  for (std::size_t later = 1; later < ranges.size(); ++later)
    for (std::size_t earlier = 0; earlier < later; ++earlier)
      if (ranges[later].low >= ranges[earlier].low && ranges[later].high <= ranges[earlier].high)
        return true;
  return false;
}

/// By where the map lies: the class objects themselves are copied into the program that names them.
inline bool isOfTheToolkit(const FXMetaClass& metaClass) {
  Dl_info place{};
  return dladdr(metaClass.*reveal(Map()), &place) != 0 && place.dli_fname &&
         std::strstr(place.dli_fname, "libFOX");
}

/// All classes of this program that have a map.
inline std::vector<const FXMetaClass*> ownClasses() {
  std::vector<const FXMetaClass*> own;
  const FXMetaClass* const* table = *reveal(Classes());
  for (FXuint slot = 0; slot < *reveal(ClassTableSize()); ++slot) {
    // The table marks a slot that was given up with a pointer to no class.
    const bool used = table[slot] && table[slot] != reinterpret_cast<const FXMetaClass*>(-1L);
    if (used && !rangesOf(*table[slot]).empty() && !isOfTheToolkit(*table[slot]))
      own.push_back(table[slot]);
  }
  return own;
}

/// Names of the program's classes in whose maps two rows answer one selector.
inline std::vector<std::string> classesWithDuplicates() {
  std::vector<std::string> names;
  for (const FXMetaClass* metaClass : ownClasses())
    if (hasDuplicates(*metaClass))
      names.emplace_back(metaClass->getClassName());
  return names;
}

} // namespace Tallymoor::MessageMaps
