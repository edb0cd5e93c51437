#pragma once
#include "views/PortfolioTableTreeItem.h"

namespace Tallymoor {

/// The node "Cash Reserve" of a portfolio, with a row per cash event, and below them the cash there is and
/// the interest of the financial year.
class CashReserveTreeItem : public PortfolioTableTreeItem {
  FXDECLARE_ABSTRACT(CashReserveTreeItem)
public:
  enum { ID_DEPOSIT = 1, ID_WITHDRAW, ID_INTEREST, ID_FEE, ID_LAST };

  /// Tells the user of cash events whose days can't be right.
  CashReserveTreeItem(InvestmentTree* tree, SharePortfolioTreeItem* portfolioNode);

  FXint onRightClick(FXint x, FXint y) override;

  long onDeposit(FXObject*, FXSelector, void*);
  long onWithdraw(FXObject*, FXSelector, void*);
  long onInterest(FXObject*, FXSelector, void*);
  long onFee(FXObject*, FXSelector, void*);

protected:
  PortfolioTable* makeTable(FXComposite* frame) override;
  void buildFooter() override;
  void showTotals() override;
  std::vector<WrongDate> wrongDates() const override;

private:
  using Operation = void (SharePortfolioTreeItem::*)();

  long handleCommand(const String& context, Operation operation);
  double interestOfFinancialYear() const;

  FXLabel* m_availableLabel = nullptr;
  FXLabel* m_interestLabel = nullptr;
};

} // namespace Tallymoor
