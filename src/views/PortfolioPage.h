#pragma once
#include "views/CapitalPage.h"

namespace Tallymoor {

class IndexFigures;
class SharePortfolioTreeItem;
class SharePortfolioUser;

/// The page of one portfolio: its capital in shares and cash, and its gains against the comparison index.
class PortfolioPage : public CapitalPage {
public:
  /// The index's figures outlive the page.
  PortfolioPage(SharePortfolioTreeItem& node, IndexFigures& index);

  void tableChanged(bool rebuilt) override;

protected:
  void buildSummary() override;
  void showFigures() override;
  bool hasRecordOfToday() const override;

private:
  void showCapital();
  void showGains();
  void showTrend();

  SharePortfolioTreeItem& m_node;
  const SharePortfolioUser& m_portfolio;
  IndexFigures& m_index;
  FXLabel* m_capitalLabel = nullptr;
  FXLabel* m_sharesCapitalLabel = nullptr;
  FXLabel* m_cashCapitalLabel = nullptr;
  FXLabel* m_percentSharesLabel = nullptr;
  FXLabel* m_percentCashLabel = nullptr;
  FXLabel* m_gainTodayLabel = nullptr;
  FXLabel* m_gainWeekLabel = nullptr;
  FXLabel* m_trendLabel = nullptr; ///< without an index, how to choose one
};

} // namespace Tallymoor
