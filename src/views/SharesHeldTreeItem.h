#pragma once
#include "foundation/String.h"
#include "widgets/InvestmentTreeItem.h"
#include "widgets/Table.h"
#include <vector>

namespace Tallymoor {

class SharePortfolioTreeItem;
class SharePortfolioUser;
class SharesHeldTable;
class TotalsBar;

/// The node "Shares Held" of a portfolio, with a row per share, and below it the node of each share's
/// purchases. Both show a table with a bar of totals.
///
/// GUI thread only, under the big mutex.
class SharesHeldTreeItem : public InvestmentTreeItem, public Table::Watcher {
  FXDECLARE_ABSTRACT(SharesHeldTreeItem)
public:
  /// ID_SELL_SHARES keeps its number free.
  enum { ID_BUY_SHARES = 1, ID_SELL_SHARES, ID_ADD_SHARES, ID_REMOVE_SHARES, ID_LAST };

  /// "Shares Held" of the portfolio.
  SharesHeldTreeItem(InvestmentTree* tree, SharePortfolioTreeItem* portfolioNode);
  /// The purchases of one share.
  SharesHeldTreeItem(InvestmentTree* tree, SharesHeldTreeItem* sharesHeld, const String& code);
  ~SharesHeldTreeItem() override;

  void update() override;
  FXint onLeftClick(FXint x, FXint y) override;
  FXint onRightClick(FXint x, FXint y) override;
  void tableChanged(bool rebuilt) override;

  /// Makes the nodes of the shares' purchases anew where they differ from what is held; a view date leaves
  /// none. A page that goes with its node gives way to this node's.
  void updateChildren();
  /// The records have changed: until they are filled anew, the tables of this node and the nodes below read
  /// nothing.
  void recordsChanged();

  /// Empty on "Shares Held".
  const String& code() const { return m_code; }
  SharePortfolioUser& portfolio() const;
  /// Null when building the node failed.
  SharesHeldTable* table() const { return m_table; }
  TotalsBar* totalsBar() const { return m_totalsBar; }

  long onBuyShares(FXObject*, FXSelector, void*);
  long onAddShares(FXObject*, FXSelector, void*);
  long onRemoveShares(FXObject*, FXSelector, void*);

private:
  bool isPurchases() const { return !m_code.empty(); }
  void buildPage();
  std::vector<String> codesToShow() const;
  void buildTotals();
  void showTotals();

  SharePortfolioTreeItem* m_portfolioNode = nullptr;
  String m_code;
  SharesHeldTable* m_table = nullptr;
  TotalsBar* m_totalsBar = nullptr;
};

} // namespace Tallymoor
