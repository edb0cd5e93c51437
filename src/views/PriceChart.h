#pragma once
#include "analysis/Performance.h"
#include "foundation/String.h"
#include "views/ChartFrame.h"

namespace Tallymoor {

/// The prices of one stock up to the view date, with its purchases and sales in some portfolios, the line
/// through its recent weeks and its limits. Drawing takes what is cached; only when a stock or a longer range
/// is chosen are missing prices fetched, silently. GUI thread, under the big mutex.
class PriceChart : public ChartFrame {
  FXDECLARE_ABSTRACT(PriceChart)
public:
  /// The portfolios are not owned.
  PriceChart(FXComposite* parent, Portfolios portfolios);

  /// Shows these from now on: to be called before one of the old ones ends.
  void setPortfolios(Portfolios portfolios);
  /// Shows this stock from now on; an empty code none. May take a while: fetches what is missing.
  void show(const String& code);
  using FXVerticalFrame::show;
  const String& code() const { return m_code; }

protected:
  PriceChart() = default;
  ChartModel makeModel(const Date& from, const Date& to) override;
  void rangeChosen() override;

private:
  void loadHistory() const;

  Portfolios m_portfolios;
  String m_code;
};

} // namespace Tallymoor
