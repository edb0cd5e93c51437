#pragma once
#include "views/PortfolioCommands.h"
#include "widgets/InvestmentTreeItem.h"
#include <memory>
#include <set>

namespace Tallymoor {

class ReceiveDividendsDialog;
struct UnrecordedDividend;
class CashReserveTreeItem;
class DividendsTreeItem;
class IndexFigures;
class PerformanceView;
class PortfolioPage;
class PriceWatch;
class SharePortfolioUser;
class SharesHeldTreeItem;
class SharesSoldTreeItem;
struct NodeIcons;
class TotalCapTreeItem;

/// The node of one portfolio, with the nodes of its tables below it, and the commands that change it.
///
/// GUI thread only, under the big mutex.
class SharePortfolioTreeItem : public InvestmentTreeItem, public PortfolioCommands {
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

  /// Makes the nodes below. The portfolio's capital record is brought up to date later, by bringUpToDate or
  /// when something asks for it. The portfolio outlives the node.
  SharePortfolioTreeItem(InvestmentTree* tree, TotalCapTreeItem* root, SharePortfolioUser& portfolio);
  ~SharePortfolioTreeItem() override;

  /// Leaves a record alone that was not brought up to date yet.
  void update() override;
  FXint onLeftClick(FXint x, FXint y) override;
  FXint onRightClick(FXint x, FXint y) override;

  void buyShares(const String& code) override;
  void sellShares(const String& code) override;
  void showPurchases(const String& code) override;
  void change(const String& sentence, const std::function<void()>& command) override;
  /// The portfolio's records are about to change or have just changed: its tables stop reading them at once,
  /// and everything that shows them is rebuilt when the running handler has returned.
  void transactionMade();
  /// The first of the two alone.
  void stopReading();
  void priceTyped(const String& code, const Date& date, double price) override;
  void pricesCorrected() override;
  void limitsTyped(const String& code, const PriceLimits& limits) override;
  /// Each asks for a dividend or an amount of cash, and records it.
  void receiveDividend();
  /// The same for one that a source tells, with what is known of it filled in. True if it was recorded.
  bool recordToldDividend(const UnrecordedDividend& told);
  void receiveInterest();
  void depositCash();
  void withdrawCash();
  void payAccountFee();
  /// Asks for the portfolio's name and comparison index, and stores them.
  void changeProperties();
  /// Asks for the name alone.
  void rename();
  /// Asks whether the portfolio is to go for good, with its records.
  void remove();

  /// Computes the missing days of the capital record for the first time since the node was made, then tells
  /// of wrong dates in the records. Reports failures itself. Does nothing when it was done before.
  void bringUpToDate();
  /// True once that was done: before, no figure of the portfolio is shown.
  bool isUpToDate() const { return !m_isDue && !m_isComing; }
  /// Brings the record up to date if that was not done before, and shows it in the total: before whatever
  /// needs its figures.
  void ensureRecord();
  /// Computes the missing days of the capital record, as every user's action on the portfolio's views begins.
  /// Reports failures itself.
  void makeRecordCurrent();
  bool hasRecordOfToday() const;
  SharePortfolioUser& portfolio() const { return *m_portfolio; }
  const NodeIcons& icons() const;
  /// What the comparison index did, as the page shows it.
  IndexFigures& indexFigures() const { return *m_indexFigures; }
  SharesHeldTreeItem* sharesHeldItem() const { return m_sharesHeldItem; }
  SharesSoldTreeItem* sharesSoldItem() const { return m_sharesSoldItem; }
  DividendsTreeItem* dividendsItem() const { return m_dividendsItem; }
  CashReserveTreeItem* cashReserveItem() const { return m_cashReserveItem; }
  /// Null when building the node failed.
  PerformanceView* performance();

  /// What the node's popup sends.
  long onCommand(FXObject*, FXSelector, void*);

protected:
  void makeViews() override;
  void viewsGone() override;
  void freshenViews() override;

private:
  bool record(ReceiveDividendsDialog& dialog);
  void makeChildren();
  void pricesCame(const std::set<String>& codes);
  void bookCash(const String& title, std::int32_t type, const String& descriptionStart,
                const String& sentenceStart);

  TotalCapTreeItem* m_root = nullptr;
  SharePortfolioUser* m_portfolio = nullptr;
  SharesHeldTreeItem* m_sharesHeldItem = nullptr;
  SharesSoldTreeItem* m_sharesSoldItem = nullptr;
  DividendsTreeItem* m_dividendsItem = nullptr;
  CashReserveTreeItem* m_cashReserveItem = nullptr;
  std::unique_ptr<IndexFigures> m_indexFigures;
  std::unique_ptr<PortfolioPage> m_views; ///< null until the page is made
  std::unique_ptr<PriceWatch> m_priceWatch;
  bool m_isDue = true;     ///< the record is yet to be brought up to date
  bool m_isComing = false; ///< while that is done
};

} // namespace Tallymoor
