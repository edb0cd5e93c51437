#pragma once
#include "session/Change.h"
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Tallymoor {

/// What the changes of a journal make of the records that were read from disk.
struct Recovery {
  /// A portfolio that is not as it was read.
  struct Portfolio {
    String nameNow;  ///< as it was read; empty for one that is not there
    String nameThen; ///< empty for one that is to go
    std::uint32_t place;
    bool moves; ///< to another place
    std::string text;
  };

  std::size_t count; ///< of the changes that the records lacked: the last ones
  std::vector<Portfolio> portfolios;

  /// The changes since the last save, the oldest first, and the text of each portfolio by name. The records
  /// may have been written after any of the changes. Nothing if they are of none of these moments.
  static std::optional<Recovery> of(const std::vector<Change>& changes,
                                    const std::map<String, std::string>& texts);
};

/// What the user is told about the last `count` of the changes.
String recoveredText(const std::vector<Change>& changes, std::size_t count);
/// What the user is told about changes that don't belong to the records; the journal with them was copied.
String refusedText(const std::vector<Change>& changes, const String& copy);

} // namespace Tallymoor
