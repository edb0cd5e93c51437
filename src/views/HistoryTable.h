#pragma once
#include "session/ChangeHistory.h"
#include "views/ChoiceTable.h"
#include <list>
#include <vector>

namespace Tallymoor {

/// The changes of the records, a row each, the newest first, and at the end the state before the oldest.
class HistoryTable : public ChoiceTable {
  FXDECLARE_ABSTRACT(HistoryTable)
public:
  /// A row: a change, or null for the state before the oldest.
  struct Line {
    const ChangeHistory::Entry* change;
    std::uint64_t number() const { return change ? change->number : 0; }
  };

  /// The changes outlive the table.
  HistoryTable(FXComposite* parent, const std::vector<ChangeHistory::Entry>& changes);

  /// Lists only changes that have the text in their sentence, whatever its capitals, and are of the
  /// portfolio; an empty one is no condition.
  void filter(const String& text, const String& portfolio);
  /// That of the chosen row; null without rows. Valid until the rows are filled again.
  const Line* chosen() const;

protected:
  void fillTable() override;

private:
  bool isWanted(const ChangeHistory::Entry& change) const;

  const std::vector<ChangeHistory::Entry>& m_changes;
  String m_text; ///< in small letters
  String m_portfolio;
  std::list<Line> m_lines;
};

/// The sentence of a change as the history lists it: also whether it was undone or made again.
String sentenceOf(const ChangeHistory::Entry& change);
/// The user's day and time of a moment in seconds since 1970, UTC.
String dayOfMoment(std::int64_t moment);
String timeOfMoment(std::int64_t moment);

} // namespace Tallymoor
