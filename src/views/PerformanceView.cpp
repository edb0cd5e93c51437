#include "views/PerformanceView.h"
#include "views/CapitalChart.h"
#include "views/PortfolioPerformanceTable.h"
#include <utility>

namespace Tallymoor {

FXIMPLEMENT(PerformanceView, RememberedSplitter, nullptr, 0)

namespace {

constexpr FXint USUAL_SHARE = 450; ///< of the table, in thousandths of the height

} // namespace

PerformanceView::PerformanceView(FXComposite* page, const Portfolios& portfolios, bool isTotal,
                                 const String& tableName, Table::Watcher* watcher)
    : RememberedSplitter(page, u"Y Splitter Performance", USUAL_SHARE) {
  auto* frame =
      new FXVerticalFrame(this, LAYOUT_FILL_X | LAYOUT_FILL_Y | FRAME_SUNKEN, 0, 0, 0, 0, 4, 4, 4, 4, 4, 4);
  m_table = new PortfolioPerformanceTable(portfolios, isTotal, tableName, frame, watcher);
  m_chart = new CapitalChart(this, portfolios);
}

PortfolioPerformanceTable& PerformanceView::table() const {
  if (std::exchange(m_overdue, false))
    m_table->updateTable();
  return *m_table;
}

void PerformanceView::setPortfolios(const Portfolios& portfolios) {
  m_overdue = false;
  m_table->setPortfolios(portfolios);
  m_chart->setPortfolios(portfolios);
}

void PerformanceView::update() {
  recalc(); // the bar may have been moved on another page
  m_overdue = false;
  m_table->updateTable();
}

void PerformanceView::updateWhenWanted() {
  m_overdue = true;
  recordsChanged();
}

void PerformanceView::recordsChanged() {
  m_table->recordsChanged();
}

} // namespace Tallymoor
