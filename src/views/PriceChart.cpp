#include "views/PriceChart.h"
#include "market/TallymoorInternet.h"
#include "views/ChartModels.h"
#include "views/PriceWatch.h"
#include <algorithm>
#include <set>
#include <utility>

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(PriceChart, ChartFrame, nullptr, 0)

PriceChart::PriceChart(FXComposite* parent, Portfolios portfolios)
    : ChartFrame(parent, u"PriceRange"), m_portfolios(std::move(portfolios)),
      m_prices(std::make_unique<PriceWatch>(getApp(), u"PriceChart::refresh failed.",
                                            [this](const std::set<String>& codes) {
                                              if (codes.contains(m_code))
                                                refresh();
                                            })) {}

PriceChart::PriceChart() = default;

PriceChart::~PriceChart() = default;

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
void PriceChart::loadHistory() {
  m_need.reset();
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
  m_need = {m_code, first, today, HistoryNeed::Kind::Backward};
  gateway.requestHistory(*m_need);
}

ChartModel PriceChart::makeModel(const Date& from, const Date& to) {
  if (m_code.empty()) {
    ChartModel none;
    none.emptyText = u"Choose a stock to see its prices.";
    return none;
  }
  ChartModel model = priceChartModel(m_code, portfolios(), from, to);
  if (m_need && TallymoorInternet::Instance().requestHistory(*m_need))
    model.emptyText = u"The prices of " + m_code + u" are being fetched.";
  return model;
}

} // namespace Tallymoor
