#include "views/PerformanceView.h"
#include "foundation/Settings.h"
#include "views/CapitalChart.h"
#include "views/PortfolioPerformanceTable.h"
#include "widgets/HandlerScope.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(PerformanceView)
PerformanceViewMap[] = {
    FXMAPFUNC(SEL_COMMAND, PerformanceView::ID_SPLITTER, PerformanceView::onSplitterMoved),
};

FXIMPLEMENT(PerformanceView, FXSplitter, PerformanceViewMap, ARRAYNUMBER(PerformanceViewMap))

namespace {

const String SECTION = u"Gui Settings";
const String TABLE_PART = u"Y Splitter Performance";

// Parts of the height, in thousandths.
constexpr std::uint32_t WHOLE = 1000;
constexpr std::uint32_t USUAL_PART = 450;
constexpr std::uint32_t LEAST_PART = 100; ///< so that neither can be lost

} // namespace

PerformanceView::PerformanceView(FXComposite* page, const Portfolios& portfolios, bool isTotal,
                                 const String& tableName, Table::Watcher* watcher)
    : FXSplitter(page, this, ID_SPLITTER, SPLITTER_VERTICAL | LAYOUT_FILL_X | LAYOUT_FILL_Y) {
  auto* frame =
      new FXVerticalFrame(this, LAYOUT_FILL_X | LAYOUT_FILL_Y | FRAME_SUNKEN, 0, 0, 0, 0, 4, 4, 4, 4, 4, 4);
  m_table = new PortfolioPerformanceTable(portfolios, isTotal, tableName, frame, watcher);
  m_chart = new CapitalChart(this, portfolios);
}

void PerformanceView::setPortfolios(const Portfolios& portfolios) {
  m_table->setPortfolios(portfolios);
  m_chart->setPortfolios(portfolios);
}

void PerformanceView::update() {
  restoreSplit();
  m_table->updateTable();
}

void PerformanceView::restoreSplit() {
  const std::uint32_t part = std::clamp(Settings::Instance().readUnsigned(SECTION, TABLE_PART, USUAL_PART),
                                        LEAST_PART, WHOLE - LEAST_PART);
  m_splitHeight = getHeight();
  setSplit(0, m_splitHeight * static_cast<FXint>(part) / static_cast<FXint>(WHOLE));
}

/// Only for another height: in between the user may be moving the line.
void PerformanceView::layout() {
  if (getHeight() != m_splitHeight)
    restoreSplit();
  FXSplitter::layout();
}

long PerformanceView::onSplitterMoved(FXObject*, FXSelector, void*) {
  return guardedHandler(u"PerformanceView::onSplitterMoved failed.", [this] {
    if (getHeight() > 0)
      Settings::Instance().writeUnsigned(SECTION, TABLE_PART,
                                         static_cast<std::uint32_t>(getSplit(0)) * WHOLE /
                                             static_cast<std::uint32_t>(getHeight()));
  });
}

} // namespace Tallymoor
