#pragma once
#include "views/CapitalPage.h"
#include <map>

namespace Tallymoor {

class TotalCapTreeItem;

/// The page of all portfolios together: the capital of each, and their gains.
class TotalCapPage : public CapitalPage {
public:
  TotalCapPage(TotalCapTreeItem& node, const Portfolios& portfolios);

protected:
  void buildSummary() override;
  void showFigures() override;
  bool hasRecordOfToday() const override;

private:
  struct Labels {
    FXLabel* capital;
    FXLabel* percent;
  };
  struct Totals {
    double capital = 0.0;
    double gainToday = 0.0; ///< percent
    double gainWeek = 0.0;
  };

  void buildSummary(const Totals& totals);
  void buildPortfolioRows();
  Totals totals() const;
  void showPortfolios(const Totals& totals);

  TotalCapTreeItem& m_node;
  std::map<String, Labels> m_portfolioLabels;
  FXLabel* m_totalLabel = nullptr;
  FXLabel* m_gainTodayLabel = nullptr;
  FXLabel* m_gainWeekLabel = nullptr;
};

} // namespace Tallymoor
