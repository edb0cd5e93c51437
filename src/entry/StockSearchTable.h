#pragma once
#include "market/CodeSearchResult.h"
#include "widgets/Table.h"
#include <vector>

namespace Tallymoor {

/// The answers of a stock search, a row each, with the code in the row's header. Whole rows are selected; a
/// double click or Enter sends SEL_COMMAND to the chooser.
class StockSearchTable : public Table {
  FXDECLARE_ABSTRACT(StockSearchTable)
public:
  /// The results are not owned and must outlive the table. Those without a name get no row.
  StockSearchTable(FXComposite* parent, std::vector<CodeSearchResult>& results, FXObject* chooser,
                   FXSelector selector);

  /// Selects the row whose name is the text, else the first whose name holds it, whatever the case, else the
  /// first.
  void selectBest(const String& text);
  /// Of the first selected row; null when none is.
  const CodeSearchResult* selected() const;

  long onChanged(FXObject*, FXSelector, void*);
  long onReleased(FXObject*, FXSelector, void*);
  long onDoubleClicked(FXObject*, FXSelector, void*);

protected:
  void fillTable() override;

private:
  void selectCurrentRow();
  Row* bestRow(const String& text) const;

  std::vector<CodeSearchResult>& m_results;
  FXObject* m_chooser;
  FXSelector m_selector;
};

} // namespace Tallymoor
