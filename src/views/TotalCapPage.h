#pragma once
#include "views/CapitalPage.h"
#include <map>
#include <optional>

namespace Tallymoor {

class TotalCapTreeItem;

/// The page of all portfolios together: the capital of each, and their gains.
class TotalCapPage : public CapitalPage {
public:
  /// No portfolios while the records of some are not up to date: then the figures of the others are shown,
  /// and no total.
  TotalCapPage(TotalCapTreeItem& node, const Portfolios& portfolios);

  /// Shows the figures of the portfolios whose records are up to date.
  void showKnown();
  /// All of them are.
  void showAll(const Portfolios& portfolios);

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

  void buildSummary(const std::optional<Totals>& totals);
  static bool hasRows(const std::optional<Totals>& totals);
  void buildPortfolioRows();
  /// Nothing while the record of a portfolio is not up to date.
  std::optional<Totals> totals() const;
  void showPortfolios(const std::optional<Totals>& totals);

  TotalCapTreeItem& m_node;
  std::map<String, Labels> m_portfolioLabels;
  FXLabel* m_totalLabel = nullptr;
  FXLabel* m_gainTodayLabel = nullptr;
  FXLabel* m_gainWeekLabel = nullptr;
};

} // namespace Tallymoor
