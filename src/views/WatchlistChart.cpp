#include "views/WatchlistChart.h"
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

Portfolios WatchlistChart::portfolios() const {
  return m_commands->portfolios();
}

} // namespace Tallymoor
