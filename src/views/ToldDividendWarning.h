#pragma once
#include "analysis/Performance.h"
#include "views/PriceWatch.h"
#include <functional>

namespace Tallymoor {

/// Says in the strip of warnings, after a round of prices, that sources tell of dividends that are not
/// recorded, until none is left. GUI thread; needs the main window.
class ToldDividendWarning {
public:
  /// The open portfolios whose records are up to date.
  using CurrentPortfolios = std::function<Portfolios()>;

  ToldDividendWarning(FX::FXApp* app, CurrentPortfolios portfolios);

  /// Looks again: some may have been recorded or refused.
  void tell();

private:
  const CurrentPortfolios m_portfolios;
  PriceWatch m_prices;
};

} // namespace Tallymoor
