#pragma once
#include "analysis/Performance.h"
#include "foundation/String.h"
#include "market/HistoryNeed.h"
#include "views/ChartFrame.h"
#include <memory>
#include <optional>

namespace Tallymoor {

class PriceWatch;

/// The prices of one stock up to the view date, with its purchases and sales in some portfolios, the line
/// through its recent weeks and its limits. Drawing takes what is cached; missing prices are fetched in the
/// background when a stock or a longer range is chosen, and drawn when they come. GUI thread, under the big
/// mutex.
class PriceChart : public ChartFrame {
  FXDECLARE_ABSTRACT(PriceChart)
public:
  /// The portfolios are not owned.
  PriceChart(FXComposite* parent, Portfolios portfolios);

  ~PriceChart() override;

  /// Shows these from now on: to be called before one of the old ones ends.
  void setPortfolios(Portfolios portfolios);
  /// Shows this stock from now on; an empty code none.
  void show(const String& code);
  using FXVerticalFrame::show;
  const String& code() const { return m_code; }

protected:
  PriceChart();
  ChartModel makeModel(const Date& from, const Date& to) override;
  /// Whose trades are shown.
  virtual Portfolios portfolios() const { return m_portfolios; }
  void rangeChosen() override;

private:
  void loadHistory();

  Portfolios m_portfolios;
  String m_code;
  std::optional<HistoryNeed> m_need; ///< the days for which the chosen range asks
  std::unique_ptr<PriceWatch> m_prices;
};

} // namespace Tallymoor
