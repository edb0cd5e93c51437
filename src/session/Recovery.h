#pragma once
#include "session/Replay.h"
#include <optional>
#include <vector>

namespace Tallymoor {

/// What the changes of a journal make of the records that were read from disk.
struct Recovery {
  std::vector<Change> made; ///< those that the records lacked
  std::vector<Change> lost; ///< those that do not belong to the records, behind one that can't be read
  std::vector<RestoredPortfolio> portfolios;

  /// The changes since the last save, the oldest first, and the portfolios in the order of the records. These
  /// may have been written after any of the changes. Nothing if they are of none of these moments, or if a
  /// change does not follow from the one before it; with a damaged journal, such a one is lost.
  static std::optional<Recovery> of(const std::vector<Change>& changes,
                                    std::vector<Replay::Portfolio> portfolios, bool isDamaged);
};

/// What the user is told about changes that were recovered.
String recoveredText(const std::vector<Change>& made);
/// The same where a part of the journal can't be read, and other changes may be lost. The journal was copied.
String partlyRecoveredText(const Recovery& recovery, const String& copy);
/// What the user is told about changes that don't belong to the records, because another program has changed
/// these, or because the journal is damaged. The journal was copied, and the records with these changes are
/// kept as a dated copy; that path is empty if they are not.
String refusedText(const std::vector<Change>& changes, bool isDamaged, const String& journalCopy,
                   const String& recordsCopy);

} // namespace Tallymoor
