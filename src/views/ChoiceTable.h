#pragma once
#include "widgets/Table.h"
#include <functional>

namespace Tallymoor {

/// A table whose whole rows are selected, for buttons beside it that work on the chosen row.
class ChoiceTable : public Table {
  FXDECLARE_ABSTRACT(ChoiceTable)
public:
  /// As Table, filling its parent.
  ChoiceTable(const String& name, FXComposite* parent, std::int32_t rowCompareType = COMPARE_TEXT);

  /// Called when another row is chosen, or the rows were filled again.
  void setChoiceWatcher(std::function<void()> watcher) { m_choiceChanged = std::move(watcher); }

  /// Key of the chosen row, else of the first one; empty without rows.
  String chosenKey() const;
  void choose(const String& key);

  long onChanged(FXObject*, FXSelector, void*);

protected:
  /// Null without rows.
  const Row* chosenRow() const;

private:
  void selectCurrentRow();

  std::function<void()> m_choiceChanged;
};

} // namespace Tallymoor
