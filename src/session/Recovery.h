#pragma once
#include "session/Replay.h"
#include <optional>
#include <vector>

namespace Tallymoor {

/// What the changes of a journal make of the records that were read from disk.
struct Recovery {
  std::size_t count; ///< of the changes that the records lacked: the last ones
  std::vector<RestoredPortfolio> portfolios;

  /// The changes since the last save, the oldest first, and the portfolios in the order of the records. These
  /// may have been written after any of the changes. Nothing if they are of none of these moments.
  static std::optional<Recovery> of(const std::vector<Change>& changes,
                                    std::vector<Replay::Portfolio> portfolios);
};

/// What the user is told about the last `count` of the changes.
String recoveredText(const std::vector<Change>& changes, std::size_t count);
/// What the user is told about changes that don't belong to the records; the journal with them was copied.
String refusedText(const std::vector<Change>& changes, const String& copy);

} // namespace Tallymoor
