#pragma once
#include "session/Journal.h"
#include "session/Replay.h"
#include <cstdint>
#include <string>
#include <vector>

namespace Tallymoor {

/// The changes of a journal with what each did, and the way back to the state after any of them. Only the
/// heads of the changes are in memory: what one did is read, and the texts of the portfolios are carried
/// back to it from those of now, when that is asked for.
///
/// Good until the next change. GUI thread, under the big mutex.
class ChangeHistory {
public:
  using Entry = Journal::Entry;
  /// What a change did to one portfolio.
  struct Difference {
    String portfolio;
    std::string before; ///< its text; empty for one that was not there
    std::string after;
    /// What was removed and inserted, where the texts of that time can't be had any more; both are empty
    /// then.
    std::vector<TextEdit> edits;
  };

  /// The journal must outlive this, and may be null where nothing has changed yet. The portfolios are in the
  /// order of the records.
  ChangeHistory(Journal* journal, std::vector<Replay::Portfolio> now);

  /// As Journal::changes, the oldest first.
  const std::vector<Entry>& changes() const { return m_changes; }
  /// Throws Exception when the change can't be read any more.
  std::vector<Difference> differencesOf(const Entry& change);
  /// How many changes have been made since the one with that number; all of them for 0.
  std::size_t countSince(std::uint64_t number) const;
  /// What is to be done to have the portfolios as they were after the change with that number, 0 for before
  /// the oldest. Throws Exception when there is no way back to that.
  std::vector<RestoredPortfolio> wayBackTo(std::uint64_t number);

private:
  bool goTo(std::size_t next);
  std::size_t firstAfter(std::uint64_t number) const;

  Journal* m_journal;
  std::vector<Entry> m_changes;
  Replay m_texts;     ///< of before the change at that place
  std::size_t m_next; ///< place in m_changes
};

} // namespace Tallymoor
