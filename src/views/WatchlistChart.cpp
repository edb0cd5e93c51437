#include "views/WatchlistChart.h"
#include "views/ChartModels.h"
#include "views/WatchlistCommands.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(WatchlistChart, PriceChart, nullptr, 0)

WatchlistChart::WatchlistChart(FXComposite* parent, WatchlistCommands& commands)
    : PriceChart(parent, {}), m_commands(&commands) {}

void WatchlistChart::choose(const String& code) {
  if (code == this->code())
    refresh();
  else
    show(code);
}

ChartModel WatchlistChart::makeModel(const Date& from, const Date& to) {
  if (code().empty())
    return PriceChart::makeModel(from, to);
  return priceChartModel(code(), m_commands->portfolios(), from, to);
}

} // namespace Tallymoor
