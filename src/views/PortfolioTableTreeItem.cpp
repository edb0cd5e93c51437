#include "views/PortfolioTableTreeItem.h"
#include "foundation/Platform.h"
#include "views/CellFigures.h"
#include "views/PortfolioTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalsBar.h"
#include "widgets/InvestmentTree.h"
#include <utility>

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(PortfolioTableTreeItem, InvestmentTreeItem, nullptr, 0)

PortfolioTableTreeItem::PortfolioTableTreeItem(InvestmentTree* tree, InvestmentTreeItem* parentItem,
                                               SharePortfolioTreeItem* portfolioNode, const String& label,
                                               FXIcon* icon)
    : InvestmentTreeItem(tree, parentItem, label, icon, icon), m_portfolioNode(portfolioNode) {}

void PortfolioTableTreeItem::makeViews() {
  m_portfolioNode->ensureRecord();
  m_tableArea = makeTableArea();
  auto* frame = new FXVerticalFrame(m_tableArea, LAYOUT_FILL_X | LAYOUT_FILL_Y | FRAME_SUNKEN, 0, 0, 0, 0, 4,
                                    4, 4, 4, 4, 4);
  m_table = makeTable(frame);
  buildFooter();
  tableChanged(true);
}

void PortfolioTableTreeItem::viewsGone() {
  m_table = nullptr;
  m_totalsBar = nullptr;
}

void PortfolioTableTreeItem::checkDates() {
  buildView([this] { m_wrongDates = wrongDates(); });
}

void PortfolioTableTreeItem::tellWrongDates() {
  if (isSound())
    tellOfWrongDates(portfolio(), std::exchange(m_wrongDates, {}));
}

void PortfolioTableTreeItem::buildFooter() {
  m_totalsBar = new TotalsBar(m_tableArea, m_table);
  m_table->setTotalsBar(m_totalsBar);
}

SharePortfolioUser& PortfolioTableTreeItem::portfolio() const {
  return m_portfolioNode->portfolio();
}

void PortfolioTableTreeItem::update() {
  const bool isFilled = takePageIsNew();
  if (!isSound() || !m_table)
    return;
  m_overdue = !isFilled;
  if (isShown())
    fillOverdue();
  else
    m_table->recordsChanged();
}

bool PortfolioTableTreeItem::isShown() const {
  return investmentTree()->shownItem() == this;
}

void PortfolioTableTreeItem::fillOverdue() {
  if (m_table && std::exchange(m_overdue, false))
    m_table->updateTable();
}

PortfolioTable* PortfolioTableTreeItem::table() {
  page();
  fillOverdue();
  return m_table;
}

TotalsBar* PortfolioTableTreeItem::totalsBar() {
  page();
  fillOverdue();
  return m_totalsBar;
}

FXint PortfolioTableTreeItem::onLeftClick(FXint x, FXint y) {
  if (isSound())
    m_portfolioNode->makeRecordCurrent();
  return InvestmentTreeItem::onLeftClick(x, y);
}

void PortfolioTableTreeItem::recordsChanged() {
  if (m_table)
    m_table->recordsChanged();
}

void PortfolioTableTreeItem::tableChanged(bool rebuilt) {
  if (!isSound() || !m_table || (m_overdue && !rebuilt))
    return;
  if (rebuilt && m_totalsBar)
    m_totalsBar->showColumns(totalledColumns());
  showTotals();
}

void PortfolioTableTreeItem::showTotals() {
  for (const Column::Function function : summedColumns())
    m_totalsBar->setTotal(function, textOrNotYetKnown([&] {
                            return Platform::Instance().currencyFormat(m_table->sumColumn(function));
                          }));
}

} // namespace Tallymoor
