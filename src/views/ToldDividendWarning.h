#pragma once
#include "analysis/Performance.h"
#include "views/PriceWatch.h"
#include <functional>

namespace Tallymoor {

/// Says in the strip of warnings, after a round of prices, that sources tell of dividends that are not
/// recorded, until none is left. GUI thread; needs the main window.
class ToldDividendWarning {
public:
  /// Gives the open portfolios.
  using OpenPortfolioList = std::function<Portfolios()>;

  ToldDividendWarning(FX::FXApp* app, OpenPortfolioList portfolios);

  /// Looks again: some may have been recorded or refused.
  void tell();

private:
  const OpenPortfolioList m_portfolios;
  PriceWatch m_prices;
};

} // namespace Tallymoor
