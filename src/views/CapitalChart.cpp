#include "views/CapitalChart.h"
#include "views/ChartModels.h"
#include <utility>

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(CapitalChart, ChartFrame, nullptr, 0)

CapitalChart::CapitalChart(FXComposite* parent, Portfolios portfolios)
    : ChartFrame(parent, u"CapitalRange"), m_portfolios(std::move(portfolios)) {}

void CapitalChart::setPortfolios(Portfolios portfolios) {
  m_portfolios = std::move(portfolios);
  refresh();
}

ChartModel CapitalChart::makeModel(const Date& from, const Date& to) {
  return capitalChartModel(m_portfolios, from, to);
}

} // namespace Tallymoor
