#pragma once
#include "views/PortfolioTableTreeItem.h"

namespace Tallymoor {

/// The node "Shares Sold" of a portfolio, with a row per sale.
class SharesSoldTreeItem : public PortfolioTableTreeItem {
  FXDECLARE_ABSTRACT(SharesSoldTreeItem)
public:
  /// Tells the user of sales whose days can't be right.
  SharesSoldTreeItem(InvestmentTree* tree, SharePortfolioTreeItem* portfolioNode);

  /// Offers nothing; an unsound node says so.
  FXint onRightClick(FXint x, FXint y) override;

protected:
  PortfolioTable* makeTable(FXComposite* frame) override;
  std::vector<Column::Function> summedColumns() const override;
  std::vector<WrongDate> wrongDates() const override;
};

} // namespace Tallymoor
