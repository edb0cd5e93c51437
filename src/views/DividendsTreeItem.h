#pragma once
#include "views/PortfolioTableTreeItem.h"

namespace Tallymoor {

/// The node "Dividends Received" of a portfolio, with a row per dividend.
class DividendsTreeItem : public PortfolioTableTreeItem {
  FXDECLARE_ABSTRACT(DividendsTreeItem)
public:
  enum { ID_RECEIVE_DIVIDENDS = 1, ID_LAST };

  /// Tells the user of dividends whose days can't be right.
  DividendsTreeItem(InvestmentTree* tree, SharePortfolioTreeItem* portfolioNode);

  FXint onRightClick(FXint x, FXint y) override;

  long onReceiveDividends(FXObject*, FXSelector, void*);

protected:
  PortfolioTable* makeTable(FXComposite* frame) override;
  std::vector<Column::Function> summedColumns() const override;
  std::vector<WrongDate> wrongDates() const override;
};

} // namespace Tallymoor
