#include "views/CapitalPage.h"
#include "views/CapitalChart.h"
#include "views/PerformanceView.h"
#include "views/PortfolioPerformanceTable.h"
#include "views/SummaryFrame.h"
#include "widgets/InvestmentTree.h"
#include "widgets/InvestmentTreeItem.h"
#include <utility>

namespace Tallymoor {

CapitalPage::CapitalPage(InvestmentTreeItem& node)
    : m_node(node), m_summary(new SummaryFrame(node.madePage())) {}

void CapitalPage::makeViews(const Portfolios& portfolios, bool isTotal, const String& tableName) {
  m_performance = new PerformanceView(m_node.madePage(), portfolios, isTotal, tableName, this);
  buildSummary();
  show();
}

bool CapitalPage::isShown() const {
  return m_node.investmentTree()->shownItem() == &m_node;
}

void CapitalPage::tableChanged(bool rebuilt) {
  if (!m_node.isSound() || !m_performance || (!rebuilt && !hasRecordOfToday()))
    return;
  if (rebuilt)
    buildSummary();
  if (rebuilt || isShown())
    show();
  else
    m_overdue = true;
}

void CapitalPage::update() {
  if (isShown()) {
    m_performance->update();
  } else {
    m_performance->updateWhenWanted();
    m_overdue = true;
  }
}

void CapitalPage::freshen() {
  if (m_overdue && m_node.isSound())
    show();
}

void CapitalPage::show() {
  m_overdue = false;
  showFigures();
  m_summary->align();
  m_performance->chart().refresh();
}

void CapitalPage::recordsChanged() {
  m_performance->recordsChanged();
}

void CapitalPage::setPortfolios(const Portfolios& portfolios) {
  m_performance->setPortfolios(portfolios);
}

} // namespace Tallymoor
