#pragma once
#include "analysis/Performance.h"
#include "market/PriceUpdater.h"
#include "views/PerformanceCells.h"
#include "widgets/Table.h"
#include <list>
#include <optional>

namespace Tallymoor {

/// How the capital of one or several portfolios has grown: a row for each month, the current one first, with
/// the gains over fixed spans, beside them those of the comparison index, and the money that came in or went
/// out. Follows the prices by itself.
class PortfolioPerformanceTable : public Table, public PriceUpdater::PricesObserver {
  FXDECLARE_ABSTRACT(PortfolioPerformanceTable)
public:
  /// As Table, filling its parent. isTotal: the table stands for all capital and has no columns of an index.
  /// The portfolios are not owned.
  PortfolioPerformanceTable(const Portfolios& portfolios, bool isTotal, const String& name,
                            FXComposite* parent, Watcher* watcher);
  ~PortfolioPerformanceTable() override;

  const Portfolios& portfolios() const { return m_portfolios; }
  /// Shows these from now on, and is filled again when that is safe: called before one of the old ones ends.
  void setPortfolios(const Portfolios& portfolios);
  /// That of the portfolios, as of the last time that the table was filled.
  const PaidBrokerage& paidBrokerage() const;

  void currentPriceUpdated(const String& code, double price) override;
  void pricesUpdateFinished() override;
  void historicalPriceChanged(const String& code, const Date& date, double close) override;
  void historyArrived(const String& code) override;

protected:
  void fillTable() override;

private:
  void declareColumns();
  void addMonth(const PerformanceSpan& month);
  void requestIndex(const std::vector<PerformanceSpan>& months);
  bool concerns(const String& code) const;
  void markFrom(const Date& day);

  std::list<PerformanceRow> m_rowData; ///< newest first; read by the price updater under the big mutex
  Portfolios m_portfolios;
  mutable std::optional<PaidBrokerage> m_paidBrokerage; ///< read when a row asks for it
  bool m_isTotal = false;
};

} // namespace Tallymoor
