#include "views/TotalCapPage.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Platform.h"
#include "views/PerformanceView.h"
#include "views/PortfolioPerformanceTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SummaryFrame.h"
#include "views/TotalCapTreeItem.h"
#include <algorithm>

namespace Tallymoor {

namespace {

const String CAPITAL_IN = u"Capital in ";
const String COMING = u"..."; ///< in the place of a figure that is not known yet

String money(double amount) {
  return Platform::Instance().currencyFormat(amount);
}

/// Cash and shares together; 0 while today has no record.
double capitalOf(const SharePortfolioUser& portfolio) {
  return portfolio.cashReserveToday() + portfolio.sharesValueToday();
}

} // namespace

TotalCapPage::TotalCapPage(TotalCapTreeItem& node, const Portfolios& portfolios)
    : CapitalPage(node), m_node(node) {
  makeViews(portfolios, true, u"TotalCapPortfoliosTable");
  if (!node.isComplete())
    performance().table().setEmptyText(u"Your portfolios are being loaded...");
}

void TotalCapPage::showKnown() {
  if (m_node.isSound())
    show();
}

void TotalCapPage::showAll(const Portfolios& portfolios) {
  performance().table().setEmptyText(String());
  setPortfolios(portfolios); // which shows the figures
}

bool TotalCapPage::hasRecordOfToday() const {
  const auto nodes = m_node.portfolioNodes();
  return std::all_of(nodes.begin(), nodes.end(),
                     [](const SharePortfolioTreeItem* node) { return node->hasRecordOfToday(); });
}

void TotalCapPage::buildSummary() {
  buildSummary(totals());
}

void TotalCapPage::showFigures() {
  const std::optional<Totals> sums = totals();
  if (m_portfolioLabels.size() != (hasRows(sums) ? m_node.portfolioNodes().size() : 0))
    buildSummary(sums);
  showPortfolios(sums);
  SummaryFrame::setValue(m_totalLabel, sums ? money(sums->capital) : COMING);
  SummaryFrame::setValue(m_gainTodayLabel, sums ? String::toPercent(sums->gainToday) : COMING);
  SummaryFrame::setValue(m_gainWeekLabel, sums ? String::toPercent(sums->gainWeek) : COMING);
}

bool TotalCapPage::hasRows(const std::optional<Totals>& totals) {
  return !totals || totals->capital > 0.0;
}

std::optional<TotalCapPage::Totals> TotalCapPage::totals() const {
  if (!m_node.isComplete())
    return std::nullopt;
  Totals sums;
  for (const SharePortfolioTreeItem* node : m_node.portfolioNodes()) {
    const SharePortfolioUser& portfolio = node->portfolio();
    const double capital = capitalOf(portfolio);
    sums.capital += capital;
    sums.gainToday += portfolio.dailyGain() * capital;
    sums.gainWeek += portfolio.weeklyGain() * capital;
  }
  const bool worthSomething = sums.capital > 0.0;
  sums.gainToday = worthSomething ? sums.gainToday / sums.capital : 0.0;
  sums.gainWeek = worthSomething ? sums.gainWeek / sums.capital : 0.0;
  return sums;
}

void TotalCapPage::showPortfolios(const std::optional<Totals>& totals) {
  for (const SharePortfolioTreeItem* node : m_node.portfolioNodes()) {
    const SharePortfolioUser& portfolio = node->portfolio();
    const auto labels = m_portfolioLabels.find(portfolio.name());
    if (labels == m_portfolioLabels.end())
      continue;
    const bool isKnown = node->isUpToDate();
    const double capital = isKnown ? capitalOf(portfolio) : 0.0;
    SummaryFrame::setValue(labels->second.capital, isKnown ? money(capital) : COMING);
    SummaryFrame::setValue(labels->second.percent,
                           totals ? String::toPercent(capital / totals->capital * 100.0) : COMING);
  }
}

void TotalCapPage::buildSummary(const std::optional<Totals>& totals) {
  SummaryFrame& frame = summary();
  frame.clear();
  m_portfolioLabels.clear();
  frame.reserveValue(String::toPercent(100.0));
  if (hasRows(totals)) {
    buildPortfolioRows();
    frame.addSeparator();
  }
  frame.startRow();
  m_totalLabel = frame.addFigure(u"Total Capital");
  frame.addSeparator();
  frame.startRow();
  m_gainTodayLabel = frame.addFigure(u"Gain today");
  m_gainWeekLabel = frame.addFigure(u"Gain this week");
}

void TotalCapPage::buildPortfolioRows() {
  for (const SharePortfolioTreeItem* node : m_node.portfolioNodes()) {
    const String& name = node->portfolio().name();
    summary().startRow();
    Labels& labels = m_portfolioLabels[name];
    labels.capital = summary().addFigure(CAPITAL_IN + name);
    labels.percent = summary().addFigure(u"Percentage");
  }
}

} // namespace Tallymoor
