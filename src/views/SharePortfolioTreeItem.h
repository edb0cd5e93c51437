#pragma once
#include "views/PortfolioCommands.h"
#include "widgets/InvestmentTreeItem.h"
#include "widgets/Table.h"
#include <memory>
#include <set>

namespace Tallymoor {

class CashReserveTreeItem;
class DividendsTreeItem;
class PerformanceView;
class PriceWatch;
class SharePortfolioUser;
class SharesHeldTreeItem;
class SharesSoldTreeItem;
class SummaryFrame;
struct NodeIcons;
class TotalCapTreeItem;
class WatchedCodes;

/// The node of one portfolio: its capital in shares and cash and its gains against the comparison index, how
/// it performed month by month, and the commands that change it.
///
/// GUI thread only, under the big mutex.
class SharePortfolioTreeItem : public InvestmentTreeItem, public Table::Watcher, public PortfolioCommands {
  FXDECLARE_ABSTRACT(SharePortfolioTreeItem)
public:
  enum {
    ID_DELETE_SHARE_PORTFOLIO = 1,
    ID_RENAME_SHARE_PORTFOLIO,
    ID_BUY_SHARES,
    ID_SELL_SHARES,
    ID_RECEIVE_DIVIDENDS,
    ID_RECEIVE_INTEREST,
    ID_DEPOSIT_CASH,
    ID_WITHDRAW_CASH,
    ID_PROPERTIES,
    ID_LAST
  };

  /// Brings the portfolio's capital record up to date and makes the nodes below. The portfolio outlives the
  /// node.
  SharePortfolioTreeItem(InvestmentTree* tree, TotalCapTreeItem* root, SharePortfolioUser& portfolio);
  ~SharePortfolioTreeItem() override;

  void update() override;
  FXint onRightClick(FXint x, FXint y) override;
  void tableChanged(bool rebuilt) override;
  void pricesCameUnderRows() override { tableChanged(false); }

  void buyShares(const String& code) override;
  void sellShares(const String& code) override;
  void showPurchases(const String& code) override;
  void transactionMade() override;
  void priceTyped(const String& code, const Date& date, double price) override;
  void limitsTyped(const String& code, const PriceLimits& limits) override;
  /// Each asks for a dividend or an amount of cash, and records it.
  void receiveDividend();
  void receiveInterest();
  void depositCash();
  void withdrawCash();
  void payAccountFee();
  /// Asks for the portfolio's name and comparison index, and stores them.
  void changeProperties();

  /// Computes the missing days of the capital record, as every user's action on the portfolio's views begins.
  /// Reports failures itself.
  void makeRecordCurrent();
  SharePortfolioUser& portfolio() const { return *m_portfolio; }
  const NodeIcons& icons() const;
  /// What the comparison index made today, as the summary shows it: a percentage, "n/a" or "failed".
  const String& indexGainToday() const { return m_indexGainToday; }
  SharesHeldTreeItem* sharesHeldItem() const { return m_sharesHeldItem; }
  SharesSoldTreeItem* sharesSoldItem() const { return m_sharesSoldItem; }
  DividendsTreeItem* dividendsItem() const { return m_dividendsItem; }
  CashReserveTreeItem* cashReserveItem() const { return m_cashReserveItem; }
  /// Null when building the node failed.
  PerformanceView* performance() const { return m_performance; }

  long onDeleteSharePortfolio(FXObject*, FXSelector, void*);
  long onRenamePortfolio(FXObject*, FXSelector, void*);
  long onBuyShares(FXObject*, FXSelector, void*);
  long onSellShares(FXObject*, FXSelector, void*);
  long onReceiveDividends(FXObject*, FXSelector, void*);
  long onReceiveInterest(FXObject*, FXSelector, void*);
  long onDepositCash(FXObject*, FXSelector, void*);
  long onWithdrawCash(FXObject*, FXSelector, void*);
  long onProperties(FXObject*, FXSelector, void*);

private:
  using Operation = void (SharePortfolioTreeItem::*)();

  void makeChildren();
  void buildSummary();
  void showFigures();
  void showCapital();
  void showGains();
  void showTrend();
  void readIndexFigures();
  void readIndexGains();
  void readIndexTrend();
  void pricesCame(const std::set<String>& codes);
  bool hasRecordOfToday() const;
  void bookCash(const String& title, std::int32_t type, const String& descriptionStart);
  long handleCommand(const String& context, Operation operation);

  TotalCapTreeItem* m_root = nullptr;
  SharePortfolioUser* m_portfolio = nullptr;
  SummaryFrame* m_summaryFrame = nullptr;
  PerformanceView* m_performance = nullptr;
  SharesHeldTreeItem* m_sharesHeldItem = nullptr;
  SharesSoldTreeItem* m_sharesSoldItem = nullptr;
  DividendsTreeItem* m_dividendsItem = nullptr;
  CashReserveTreeItem* m_cashReserveItem = nullptr;
  FXLabel* m_capitalLabel = nullptr;
  FXLabel* m_sharesCapitalLabel = nullptr;
  FXLabel* m_cashCapitalLabel = nullptr;
  FXLabel* m_percentSharesLabel = nullptr;
  FXLabel* m_percentCashLabel = nullptr;
  FXLabel* m_gainTodayLabel = nullptr;
  FXLabel* m_gainWeekLabel = nullptr;
  FXLabel* m_trendLabel = nullptr; ///< without an index, how to choose one
  String m_indexGainToday;         ///< a percentage, "n/a" or "failed"
  String m_indexGainWeek;
  String m_indexTrend;    ///< what the label shows
  String m_indexTrendTip; ///< how to read it
  std::unique_ptr<WatchedCodes> m_watchedIndex;
  std::unique_ptr<PriceWatch> m_priceWatch;
};

} // namespace Tallymoor
