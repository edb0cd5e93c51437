#pragma once
#include "views/PriceChart.h"

namespace Tallymoor {

class WatchlistCommands;

/// The chart of the stock that is chosen in a watchlist, with what all portfolios have bought and sold of it.
/// It asks for the portfolios whenever it is drawn, since they come and go while the list stays.
class WatchlistChart : public PriceChart {
  FXDECLARE_ABSTRACT(WatchlistChart)
public:
  /// The commands are not owned and outlive the chart.
  WatchlistChart(FXComposite* parent, WatchlistCommands& commands);

  /// As show, and cheap when the stock is shown already.
  void choose(const String& code);

protected:
  Portfolios portfolios() const override;

private:
  WatchlistCommands* m_commands = nullptr;
};

} // namespace Tallymoor
