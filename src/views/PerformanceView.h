#pragma once
#include "engine/Performance.h"
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

  PortfolioPerformanceTable& table() const { return *m_table; }
  CapitalChart& chart() const { return *m_chart; }
  /// Shows these from now on: called before one of the old ones ends.
  void setPortfolios(const Portfolios& portfolios);
  /// Fills the table anew, when that is safe, and follows the line of the other pages.
  void update();

protected:
  PerformanceView() = default;

private:
  PortfolioPerformanceTable* m_table = nullptr;
  CapitalChart* m_chart = nullptr;
};

} // namespace Tallymoor
