#pragma once
#include "books/CapitalRecord.h"
#include "market/PriceUpdater.h"
#include "views/HeldShareRow.h"
#include "views/PortfolioTable.h"
#include "views/WatchedCodes.h"
#include "xml/PortfolioRecords.h"
#include <list>
#include <memory>
#include <vector>

namespace Tallymoor {

/// The shares that a portfolio holds on the date shown, a row each by its code. Prices and limits can be
/// typed into their cells. Follows the prices by itself.
class SharesHeldTable : public PortfolioTable, public PriceUpdater::PricesObserver {
  FXDECLARE_ABSTRACT(SharesHeldTable)
public:
  enum { ID_SELL = Table::ID_LAST + 1, ID_BUY, ID_DELETE, ID_HISTORY, ID_LAST };

  /// As PortfolioTable.
  SharesHeldTable(SharePortfolioUser& portfolio, PortfolioCommands& commands, FXComposite* parent,
                  Watcher* watcher);
  ~SharesHeldTable() override;

  /// How much all shares of the table together have gained since that day, in percent; 0 when they were worth
  /// nothing then. Shares without a price are left out.
  virtual double percentGainSince(const Date& date);

  void currentPriceUpdated(const String& code, double price) override;
  void pricesUpdateFinished() override;
  void historicalPriceChanged(const String& code, const Date& date, double close) override;
  void historyArrived(const String& code) override;

  long onSell(FXObject*, FXSelector, void*);
  long onBuy(FXObject*, FXSelector, void*);
  long onDelete(FXObject*, FXSelector, void*);
  long onHistory(FXObject*, FXSelector, void*);

protected:
  /// For a table of something narrower than the portfolio, whose own constructor fills it.
  struct Unfilled {};
  SharesHeldTable(SharePortfolioUser& portfolio, PortfolioCommands& commands, FXComposite* parent,
                  Watcher* watcher, std::int32_t rowCompareType, Unfilled);

  void fillTable() override;
  void rowPopup(const TableClick& click) override;
  /// A whole share is the sum of its purchases, which are shown.
  void editRow(Row& row) override;
  void cellEdited(Column& column, Row& row) override;
  /// A price of that code came: what has to be refreshed.
  virtual void markPrice(const String& code);

  /// Drops rows, columns and payloads.
  void clearShares();
  /// Begins a fillTable in which a whole share that is added again keeps its row.
  void releaseShares();
  void addShare(const String& key, HeldShareRow share);
  /// The updater keeps exactly the codes of the rows up to date; under a view date, those of before.
  void watchShares();
  /// The words in front of what a deletion is about.
  static const String& deletionWarning();

private:
  void fillWithShares();
  String emptyText() const;
  void addShareOfDay(const CapitalRecord::Holding& holding, const HeldShareBases& stocks);
  void keepShare(HeldShareRow& before, HeldShareRow share);
  static double earlierValue(HeldShareRow& share, const Date& date);
  void limitsEdited(const String& text, const HeldShareRow& share);
  void priceEdited(const String& text, const String& code);

  std::list<HeldShareRow> m_rowData;
  std::list<HeldShareRow> m_rowDataBefore; ///< while the table is filled: of the shares not yet added again
  std::vector<std::unique_ptr<XMLHeldShare>>
      m_viewDateShares; ///< of shares sold, in part or whole, since the view date
  WatchedCodes m_watchedCodes;
};

} // namespace Tallymoor
