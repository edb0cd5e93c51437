#pragma once
#include <algorithm>
#include <cstring>
#include <dlfcn.h>
#include <fx.h>
#include <string>
#include <vector>

namespace Tallymoor::MessageMaps {

/// Gives access to a private member. Access rules don't apply to the arguments of an explicit instantiation.
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

/// Start of every map entry: the range of selectors that it handles.
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

/// True if two rows of the map handle the same selector. The second one would never be reached.
inline bool hasDuplicates(const FXMetaClass& metaClass) {
  const std::vector<Range> ranges = rangesOf(metaClass);
  for (std::size_t later = 1; later < ranges.size(); ++later)
    for (std::size_t earlier = 0; earlier < later; ++earlier)
      if (ranges[later].low >= ranges[earlier].low && ranges[later].high <= ranges[earlier].high)
        return true;
  return false;
}

/// Compares the address of the map, because class objects are copied into the program that uses them.
inline bool isOfTheToolkit(const FXMetaClass& metaClass) {
  Dl_info place{};
  return dladdr(metaClass.*reveal(Map()), &place) != 0 && place.dli_fname &&
         std::strstr(place.dli_fname, "libFOX");
}

/// All classes of this program that have a message map.
inline std::vector<const FXMetaClass*> ownClasses() {
  std::vector<const FXMetaClass*> own;
  const FXMetaClass* const* table = *reveal(Classes());
  for (FXuint slot = 0; slot < *reveal(ClassTableSize()); ++slot) {
    // Removed entries of the table contain -1.
    const bool used = table[slot] && table[slot] != reinterpret_cast<const FXMetaClass*>(-1L);
    if (used && !rangesOf(*table[slot]).empty() && !isOfTheToolkit(*table[slot]))
      own.push_back(table[slot]);
  }
  return own;
}

/// Names of the program's classes whose maps contain a selector twice.
inline std::vector<std::string> classesWithDuplicates() {
  std::vector<std::string> names;
  for (const FXMetaClass* metaClass : ownClasses())
    if (hasDuplicates(*metaClass))
      names.emplace_back(metaClass->getClassName());
  return names;
}

} // namespace Tallymoor::MessageMaps
