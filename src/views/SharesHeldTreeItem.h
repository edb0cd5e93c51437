#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "views/ChangedHoldings.h"
#include "views/PortfolioTableTreeItem.h"
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace Tallymoor {

class PriceChart;
class RememberedSplitter;
class SharesHeldTable;
class UnseenStocks;

/// The node "Shares Held" of a portfolio, with a row per share, and below it the node of each share's
/// purchases. Both show a table with a bar of totals, the purchases also the chart of the share's price.
///
/// GUI thread only, under the big mutex.
class SharesHeldTreeItem : public PortfolioTableTreeItem {
  FXDECLARE_ABSTRACT(SharesHeldTreeItem)
public:
  enum { ID_BUY_SHARES = 1, ID_SELL_SHARES, ID_ADD_SHARES, ID_REMOVE_SHARES, ID_LAST };

  /// "Shares Held" of the portfolio.
  SharesHeldTreeItem(InvestmentTree* tree, SharePortfolioTreeItem* portfolioNode);
  /// The purchases of one share.
  SharesHeldTreeItem(InvestmentTree* tree, SharesHeldTreeItem* sharesHeld, const String& code);
  ~SharesHeldTreeItem() override;

  void update() override;
  FXint onRightClick(FXint x, FXint y) override;

  /// Rebuilds the nodes of the shares' purchases where they differ from what is held; a view date leaves
  /// none. A page that goes with its node gives way to this node's.
  void updateChildren();
  void recordsChanged() override;
  void tableChanged(bool rebuilt) override;

  /// Limits were typed somewhere: shows them, and warns where a price has left them.
  void limitsChanged();
  /// Of the stocks whose limits were not looked at since the node was made, looks at the next one; false when
  /// there is none.
  bool checkNextLimit();

  /// Empty on "Shares Held".
  const String& code() const { return m_code; }
  /// The node of a share's purchases below this one; null when there is none.
  SharesHeldTreeItem* purchasesOf(const String& code) const;
  /// Null when building the node failed.
  SharesHeldTable* table();
  /// Null on "Shares Held", and when building the node failed.
  PriceChart* chart();

  long onBuyShares(FXObject*, FXSelector, void*);
  long onSellShares(FXObject*, FXSelector, void*);
  long onAddShares(FXObject*, FXSelector, void*);
  long onRemoveShares(FXObject*, FXSelector, void*);

protected:
  void viewsGone() override;
  std::vector<WrongDate> wrongDates() const override;
  PortfolioTable* makeTable(FXComposite* frame) override;
  FXComposite* makeTableArea() override;
  std::vector<Column::Function> summedColumns() const override;
  std::vector<Column::Function> totalledColumns() const override;
  void showTotals() override;

private:
  /// What automatic limits are worked out from.
  struct LimitsBasis {
    std::uint64_t prices = 0;
    std::uint64_t settings = 0;
    Date day;
    bool operator==(const LimitsBasis&) const = default;
  };

  bool isPurchases() const { return !m_code.empty(); }
  std::vector<String> codesToShow() const;
  void arrangeChildren(const std::vector<String>& codes);
  /// A hidden page does not need the years that a chart shows.
  void showChart();
  void showName();
  void watchStocks();
  void watchHoldings();

  String m_code;
  RememberedSplitter* m_splitter = nullptr; ///< between the table and the chart
  PriceChart* m_chart = nullptr;
  ChangedHoldings m_changedHoldings;
  std::optional<LimitsBasis> m_limitsBasis; ///< none while the limits are those that the user has set
  std::unique_ptr<UnseenStocks> m_unseen;   ///< of "Shares Held", whose table knows only what it showed last
};

} // namespace Tallymoor
