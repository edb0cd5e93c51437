#include "views/PortfolioPage.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Amounts.h"
#include "foundation/Platform.h"
#include "views/IndexFigures.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SummaryFrame.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

PortfolioPage::PortfolioPage(SharePortfolioTreeItem& node, IndexFigures& index)
    : CapitalPage(node), m_node(node), m_portfolio(node.portfolio()), m_index(index) {
  makeViews({&node.portfolio()}, false, m_portfolio.name());
}

/// The table has the index's past prices fetched when it is filled.
void PortfolioPage::tableChanged(bool rebuilt) {
  if (rebuilt)
    m_index.outdate();
  CapitalPage::tableChanged(rebuilt);
}

bool PortfolioPage::hasRecordOfToday() const {
  return m_node.hasRecordOfToday();
}

void PortfolioPage::buildSummary() {
  SummaryFrame& frame = summary();
  frame.clear();
  frame.reserveCaption(0, u"Capital in shares", 40);
  frame.reserveCaption(1, u"Gain this week (index)", 20);
  frame.reserveValue(u"-10.10% (-10.10%)");
  frame.startRow();
  m_sharesCapitalLabel = frame.addFigure(u"Capital in shares");
  m_percentSharesLabel = frame.addFigure(u"Percent in shares");
  frame.startRow();
  m_cashCapitalLabel = frame.addFigure(u"Capital in cash");
  m_percentCashLabel = frame.addFigure(u"Percent in cash");
  frame.addSeparator();
  frame.startRow();
  m_capitalLabel = frame.addFigure(u"Total Capital");
  frame.addSeparator();
  frame.startRow();
  m_gainTodayLabel = frame.addFigure(u"Gain today (index)");
  m_gainWeekLabel = frame.addFigure(u"Gain this week (index)");
  frame.addButton(u" set index ", &m_node, SharePortfolioTreeItem::ID_PROPERTIES);
  m_trendLabel = frame.addRemark();
}

void PortfolioPage::showFigures() {
  showCapital();
  showGains();
  showTrend();
}

void PortfolioPage::showCapital() {
  const double shares = m_portfolio.sharesValueToday();
  const double cash = m_portfolio.cashReserveToday();
  const double total = shares + cash;
  const bool worthSomething = tenThousandths(total) > 0;
  const auto percentOfTotal = [&](double part) {
    return String::toPercent(worthSomething ? part / total * 100.0 : 0.0);
  };
  Platform& platform = Platform::Instance();
  SummaryFrame::setValue(m_capitalLabel, platform.currencyFormat(total));
  SummaryFrame::setValue(m_cashCapitalLabel, platform.currencyFormat(cash));
  SummaryFrame::setValue(m_sharesCapitalLabel, platform.currencyFormat(shares));
  SummaryFrame::setValue(m_percentSharesLabel, percentOfTotal(shares));
  SummaryFrame::setValue(m_percentCashLabel, percentOfTotal(cash));
}

void PortfolioPage::showGains() {
  const auto gainText = [](double gain, const String& index) {
    return String::toPercent(gain) + u" (" + index + u")";
  };
  SummaryFrame::setValue(m_gainTodayLabel, gainText(m_portfolio.dailyGain(), m_index.gainToday()));
  SummaryFrame::setValue(m_gainWeekLabel, gainText(m_portfolio.weeklyGain(), m_index.gainThisWeek()));
}

void PortfolioPage::showTrend() {
  SummaryFrame::setValue(m_trendLabel, m_index.trend());
  m_trendLabel->setTipText(toFox(m_index.trendTip()));
}

} // namespace Tallymoor
