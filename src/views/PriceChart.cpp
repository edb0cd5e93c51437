#include "views/PriceChart.h"
#include "engine/Indicators.h"
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

/// For all, what is cached and at least three years. The gateway tries the end of a gap only once a day, and
/// the gap before the first cached day has another end than one up to today.
void PriceChart::loadHistory() const {
  if (m_code.empty())
    return;
  const Date today;
  const Date first = std::max(startOf(range(), today), startOf(ChartRange::THREE_YEARS, today));
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  gateway.completeHistory(m_code, startOf(ChartRange::THREE_MONTHS, today), today);
  const auto cached = gateway.cachedRows(m_code, first, today);
  const Date last = cached.empty() ? today : cached.begin()->first.plusDays(-1);
  if (first <= last)
    gateway.completeHistory(m_code, first, last);
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
