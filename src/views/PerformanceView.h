#pragma once
#include "analysis/Performance.h"
#include "widgets/RememberedSplitter.h"
#include "widgets/Table.h"

namespace Tallymoor {

class CapitalChart;
class PortfolioPerformanceTable;

/// The lower part of the pages of total capital and of a portfolio: the table of performance, and under it
/// the chart of the capital. The user moves the line between them; where it stands, as a part of the height,
/// is kept in the settings and is the same on all these pages.
class PerformanceView : public RememberedSplitter {
  FXDECLARE(PerformanceView)
public:
  /// As PortfolioPerformanceTable.
  PerformanceView(FXComposite* page, const Portfolios& portfolios, bool isTotal, const String& tableName,
                  Table::Watcher* watcher);

  /// Up to date, also out of sight.
  PortfolioPerformanceTable& table() const;
  CapitalChart& chart() const { return *m_chart; }
  /// Shows these from now on: called before one of the old ones ends.
  void setPortfolios(const Portfolios& portfolios);
  /// Fills the table again, when that is safe, and follows the line of the other pages.
  void update();
  /// The same for a page out of sight: the table reads nothing until it is asked for, or the page, which
  /// updates it, is shown.
  void updateWhenWanted();
  /// The portfolios' records change: until it is filled again the table stays as it is.
  void recordsChanged();

protected:
  PerformanceView() = default;

private:
  PortfolioPerformanceTable* m_table = nullptr;
  CapitalChart* m_chart = nullptr;
  mutable bool m_overdue = false; ///< the table is to be filled when it is wanted
};

} // namespace Tallymoor
