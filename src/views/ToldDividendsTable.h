#pragma once
#include "analysis/UnrecordedDividends.h"
#include "widgets/Table.h"
#include <functional>
#include <list>

namespace Tallymoor {

/// The dividends that sources tell and that are not recorded, a row each, the newest first. Whole rows are
/// selected.
class ToldDividendsTable : public Table {
  FXDECLARE_ABSTRACT(ToldDividendsTable)
public:
  /// The portfolios are not owned.
  ToldDividendsTable(FXComposite* parent, Portfolios portfolios);

  /// Called when another row is chosen, or the rows were filled again.
  void setChoiceWatcher(std::function<void()> watcher) { m_choiceChanged = std::move(watcher); }
  /// That of the chosen row, else of the first one; null without rows. Valid until the rows are filled again.
  const UnrecordedDividend* chosen() const;

  long onChanged(FXObject*, FXSelector, void*);

protected:
  void fillTable() override;

private:
  void selectCurrentRow();

  Portfolios m_portfolios;
  std::list<UnrecordedDividend> m_dividends;
  std::function<void()> m_choiceChanged;
};

} // namespace Tallymoor
