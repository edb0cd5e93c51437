#pragma once
#include "analysis/Performance.h"
#include "widgets/Table.h"

namespace Tallymoor {

class InvestmentTreeItem;
class PerformanceView;
class SummaryFrame;

/// What stands on the page of total capital and on that of a portfolio: a summary of figures, and below it
/// the table and the chart of performance. Out of sight nothing is computed: the figures are shown when the
/// page is, or when it is asked for.
///
/// GUI thread only, under the big mutex.
class CapitalPage : public Table::Watcher {
public:
  CapitalPage(const CapitalPage&) = delete;
  CapitalPage& operator=(const CapitalPage&) = delete;

  void tableChanged(bool rebuilt) override;
  void pricesCameUnderRows() override { tableChanged(false); }

  /// The records, the prices or the day are others: fills the page, or notes that this is to be done.
  void update();
  /// Shows the figures that were put off while the page was out of sight.
  void freshen();
  /// The records change: until it is filled again the table stays as it is.
  void recordsChanged();
  /// Shows these from now on: called before one of the old ones ends.
  void setPortfolios(const Portfolios& portfolios);
  PerformanceView& performance() const { return *m_performance; }

protected:
  /// The views go into the node's page, which is being made; the subclass's constructor ends with makeViews.
  explicit CapitalPage(InvestmentTreeItem& node);
  /// The table and chart are those of PortfolioPerformanceTable.
  void makeViews(const Portfolios& portfolios, bool isTotal, const String& tableName);

  SummaryFrame& summary() const { return *m_summary; }
  virtual void buildSummary() = 0;
  /// Gives the figures of the summary their texts.
  virtual void showFigures() = 0;
  /// After midnight there is no record of today until the user's next action makes one: the figures stay
  /// meanwhile.
  virtual bool hasRecordOfToday() const = 0;

  void show();

private:
  bool isShown() const;

  InvestmentTreeItem& m_node;
  SummaryFrame* m_summary = nullptr;
  PerformanceView* m_performance = nullptr; ///< null while it is being made
  bool m_overdue = false;                   ///< the figures are to be shown when they are wanted
};

} // namespace Tallymoor
