#pragma once
#include "views/PortfolioCommands.h"
#include "widgets/InvestmentTreeItem.h"
#include "widgets/Table.h"
#include <memory>
#include <set>

namespace Tallymoor {

class PriceWatch;
class SharePortfolioUser;
class SharesHeldTreeItem;
class SummaryFrame;
struct NodeIcons;
class TotalCapTreeItem;
class WatchedCodes;

/// The node of one portfolio: its capital in shares and cash and its gains against the comparison index, and
/// the commands that change it.
///
/// GUI thread only, under the big mutex.
class SharePortfolioTreeItem : public InvestmentTreeItem, public Table::Watcher, public PortfolioCommands {
  FXDECLARE_ABSTRACT(SharePortfolioTreeItem)
public:
  /// The numbers of commands that are not there yet are kept free.
  enum { ID_DELETE_SHARE_PORTFOLIO = 1, ID_RENAME_SHARE_PORTFOLIO = 2, ID_BUY_SHARES = 3, ID_LAST = 10 };

  /// Brings the portfolio's capital record up to date and makes the nodes below. The portfolio outlives the
  /// node.
  SharePortfolioTreeItem(InvestmentTree* tree, TotalCapTreeItem* root, SharePortfolioUser& portfolio);
  ~SharePortfolioTreeItem() override;

  void update() override;
  FXint onRightClick(FXint x, FXint y) override;
  void tableChanged(bool rebuilt) override;

  void buyShares(const String& code) override;
  void transactionMade() override;
  void priceTyped(const String& code, const Date& date, double price) override;

  /// Computes the missing days of the capital record, as every user's action on the portfolio's views begins.
  /// Reports failures itself.
  void makeRecordCurrent();
  SharePortfolioUser& portfolio() const { return *m_portfolio; }
  const NodeIcons& icons() const;
  SharesHeldTreeItem* sharesHeldItem() const { return m_sharesHeldItem; }

  long onDeleteSharePortfolio(FXObject*, FXSelector, void*);
  long onRenamePortfolio(FXObject*, FXSelector, void*);
  long onBuyShares(FXObject*, FXSelector, void*);

private:
  void makeChildren();
  void buildSummary();
  void showCapital();
  void showGains();
  void readIndexGains();
  void pricesCame(const std::set<String>& codes);

  TotalCapTreeItem* m_root = nullptr;
  SharePortfolioUser* m_portfolio = nullptr;
  SummaryFrame* m_summaryFrame = nullptr;
  SharesHeldTreeItem* m_sharesHeldItem = nullptr;
  FXLabel* m_capitalLabel = nullptr;
  FXLabel* m_sharesCapitalLabel = nullptr;
  FXLabel* m_cashCapitalLabel = nullptr;
  FXLabel* m_percentSharesLabel = nullptr;
  FXLabel* m_percentCashLabel = nullptr;
  FXLabel* m_gainTodayLabel = nullptr;
  FXLabel* m_gainWeekLabel = nullptr;
  String m_indexGainToday; ///< a percentage, "n/a" or "failed"
  String m_indexGainWeek;
  std::unique_ptr<WatchedCodes> m_watchedIndex;
  std::unique_ptr<PriceWatch> m_priceWatch;
};

} // namespace Tallymoor
