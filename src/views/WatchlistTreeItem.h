#pragma once
#include "views/WatchlistTable.h"
#include "widgets/InvestmentTreeItem.h"
#include <memory>

namespace Tallymoor {

class RememberedSplitter;
class UnseenStocks;
class WatchlistChart;
class WatchlistRootTreeItem;

/// The node of a watchlist of the user's: a table of its stocks, and below it the chart of the one that is
/// chosen.
///
/// GUI thread only, under the big mutex.
class WatchlistTreeItem : public InvestmentTreeItem {
  FXDECLARE_ABSTRACT(WatchlistTreeItem)
public:
  enum { ID_ADD = 1, ID_REMOVE, ID_LAST };

  /// The list of that name in the settings.
  WatchlistTreeItem(WatchlistRootTreeItem& root, const String& name);
  ~WatchlistTreeItem() override;

  void update() override;
  FXint onRightClick(FXint x, FXint y) override;

  /// Of the list; that of the portfolio for a list of held shares.
  const String& name() const { return m_name; }
  /// True for a list that the user makes himself.
  bool editable() const { return m_editable; }
  /// Null when building the node failed.
  WatchlistTable* table();
  /// As SharesHeldTreeItem's.
  bool checkNextLimit();
  WatchlistChart* chart();

  long onAdd(FXObject*, FXSelector, void*);
  long onRemove(FXObject*, FXSelector, void*);

protected:
  /// A list of held shares, of the portfolio of that name.
  WatchlistTreeItem(WatchlistRootTreeItem& root, const String& name, const std::vector<String>& codes);
  WatchlistRootTreeItem& root() const { return *m_root; }
  /// Others from now on.
  void setCodes(const std::vector<String>& codes);
  void makeViews() override;
  void viewsGone() override;

private:
  void watchUnseen();
  void buildChart();
  void showChosen();

  WatchlistRootTreeItem* m_root = nullptr;
  String m_name;
  bool m_editable = true;
  std::vector<String> m_codes; ///< until the table is made, which has them then
  WatchlistTable* m_table = nullptr;
  RememberedSplitter* m_splitter = nullptr;
  WatchlistChart* m_chart = nullptr;
  std::unique_ptr<UnseenStocks> m_unseen; ///< until the page is made
};

} // namespace Tallymoor
