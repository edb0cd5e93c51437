#pragma once
#include "widgets/Table.h"
#include <functional>
#include <list>

namespace Tallymoor {

/// The codes that are held or watched, a row each: the last known price with its day, and what is wrong with
/// it. Whole rows are selected.
class PricesTable : public Table {
  FXDECLARE_ABSTRACT(PricesTable)
public:
  explicit PricesTable(FXComposite* parent);

  /// Called when another row is chosen, or the rows were filled again.
  void setChoiceWatcher(std::function<void()> watcher) { m_choiceChanged = std::move(watcher); }

  /// Code of the chosen row, else of the first one; empty without rows.
  String chosenCode() const;
  void choose(const String& code);
  /// "38 of 40 stocks have a price. 1 price is doubtful."
  String summary() const;

  long onChanged(FXObject*, FXSelector, void*);

protected:
  void fillTable() override;

private:
  void selectCurrentRow();

  std::function<void()> m_choiceChanged;
  std::list<String> m_codes;
};

} // namespace Tallymoor
