#include "views/PriceChart.h"
#include "analysis/Indicators.h"
#include "market/TallymoorInternet.h"
#include "views/ChartModels.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(PriceChart, ChartFrame, nullptr, 0)

PriceChart::PriceChart(FXComposite* parent, Portfolios portfolios)
    : ChartFrame(parent, u"PriceRange"), m_portfolios(std::move(portfolios)) {}

void PriceChart::setPortfolios(Portfolios portfolios) {
  m_portfolios = std::move(portfolios);
  refresh();
}

void PriceChart::show(const String& code) {
  m_code = code;
  loadHistory();
  refresh();
}

void PriceChart::rangeChosen() {
  loadHistory();
}

/// For all, from the first cached day on, and at least three years.
void PriceChart::loadHistory() const {
  if (m_code.empty())
    return;
  const Date today;
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  Date first = startOf(range(), today);
  if (range() == ChartRange::ALL) {
    const auto cached = gateway.cachedRows(m_code, first, today);
    first = startOf(ChartRange::THREE_YEARS, today);
    if (!cached.empty())
      first = std::min(first, cached.begin()->first);
  }
  gateway.completeHistory(m_code, first, today);
  trendLineOf(m_code, today); // for its weeks, so that drawing the line won't fetch them
}

ChartModel PriceChart::makeModel(const Date& from, const Date& to) {
  if (!m_code.empty())
    return priceChartModel(m_code, m_portfolios, from, to);
  ChartModel none;
  none.emptyText = u"Choose a stock to see its prices.";
  return none;
}

} // namespace Tallymoor
