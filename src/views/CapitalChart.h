#pragma once
#include "analysis/Performance.h"
#include "views/ChartFrame.h"

namespace Tallymoor {

/// The capital of one or several portfolios over time against the comparison index, up to the view date; to
/// be placed under a table. GUI thread, under the big mutex.
class CapitalChart : public ChartFrame {
  FXDECLARE_ABSTRACT(CapitalChart)
public:
  /// The portfolios are not owned.
  CapitalChart(FXComposite* parent, Portfolios portfolios);

  /// Shows these from now on: to be called before one of the old ones ends.
  void setPortfolios(Portfolios portfolios);

protected:
  CapitalChart() = default;
  ChartModel makeModel(const Date& from, const Date& to) override;

private:
  Portfolios m_portfolios;
};

} // namespace Tallymoor
