#pragma once
#include "views/WrongDates.h"
#include "widgets/InvestmentTreeItem.h"
#include "widgets/Table.h"
#include <vector>

namespace Tallymoor {

class PortfolioTable;
class SharePortfolioTreeItem;
class SharePortfolioUser;
class TotalsBar;

/// A node below that of a portfolio: its page shows one table of the portfolio's records, with totals below.
///
/// A portfolio may have hundreds of these nodes, and a change of its records concerns most of them. So a
/// table is made with its page, and out of sight it is not filled again before its page is shown or somebody
/// asks for it; until then it reads nothing.
///
/// GUI thread only, under the big mutex.
class PortfolioTableTreeItem : public InvestmentTreeItem, public Table::Watcher {
  FXDECLARE_ABSTRACT(PortfolioTableTreeItem)
public:
  /// The parent is the portfolio's node or a node below it. The subclass's constructor calls checkDates.
  PortfolioTableTreeItem(InvestmentTree* tree, InvestmentTreeItem* parentItem,
                         SharePortfolioTreeItem* portfolioNode, const String& label, FXIcon* icon);

  /// Fills the table again, now or, out of sight, when it is wanted.
  void update() override;
  FXint onLeftClick(FXint x, FXint y) override;
  void tableChanged(bool rebuilt) override;

  /// The records have changed: until they are filled again, the tables of this node and the nodes below read
  /// nothing.
  virtual void recordsChanged();
  /// Tells the user, once, of the records' days that can't be right.
  void tellWrongDates();

  SharePortfolioUser& portfolio() const;
  /// Up to date, also out of sight. Null when building the node failed.
  PortfolioTable* table();
  /// The same. Null as well where the page has no bar of totals.
  TotalsBar* totalsBar();

protected:
  /// Makes the table and what stands below it.
  void makeViews() override;
  void viewsGone() override;
  /// Looks for days of the records that can't be right. One that can't be read leaves the node unsound.
  void checkDates();
  virtual std::vector<WrongDate> wrongDates() const = 0;
  virtual PortfolioTable* makeTable(FXComposite* frame) = 0;
  /// What holds the table and its footer: here the page.
  virtual FXComposite* makeTableArea() { return page(); }
  /// What stands below the table: here the bar of totals.
  virtual void buildFooter();
  /// The columns of money whose sums the bar shows.
  virtual std::vector<Column::Function> summedColumns() const { return {}; }
  /// All columns that have a total in the bar.
  virtual std::vector<Column::Function> totalledColumns() const { return summedColumns(); }
  bool isShown() const;
  /// Gives the totals their texts: here the sums.
  virtual void showTotals();

  SharePortfolioTreeItem* portfolioNode() const { return m_portfolioNode; }

private:
  void fillOverdue();

  SharePortfolioTreeItem* m_portfolioNode = nullptr;
  PortfolioTable* m_table = nullptr;
  TotalsBar* m_totalsBar = nullptr;
  FXComposite* m_tableArea = nullptr;
  std::vector<WrongDate> m_wrongDates; ///< yet to be told
  bool m_overdue = false;              ///< the table is to be filled when it is wanted
};

} // namespace Tallymoor
