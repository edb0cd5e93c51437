#include "views/TotalCapTreeItem.h"
#include "foundation/FileReplacement.h"
#include "foundation/LengthyFunctions.h"
#include "foundation/Platform.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "market/MarketPrices.h"
#include "session/BookQuestions.h"
#include "views/CapitalChart.h"
#include "views/PerformanceView.h"
#include "views/PortfolioPerformanceTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharedLimits.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/SummaryFrame.h"
#include "views/TreeState.h"
#include "widgets/ColumnChoice.h"
#include "widgets/ContextMenu.h"
#include "widgets/GetStringDialog.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/MainWindow.h"
#include "xml/CleanName.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(TotalCapTreeItem)
TotalCapTreeItemMap[] = {
    FXMAPFUNC(SEL_COMMAND, TotalCapTreeItem::ID_NEW_SHARE_PORTFOLIO, TotalCapTreeItem::onNewSharePortfolio),
};

FXIMPLEMENT_ABSTRACT(TotalCapTreeItem, InvestmentTreeItem, TotalCapTreeItemMap,
                     ARRAYNUMBER(TotalCapTreeItemMap))

namespace {

const String CAPITAL_IN = u"Capital in ";

String money(double amount) {
  return Platform::Instance().currencyFormat(amount);
}

/// Cash and shares together; 0 while today has no record.
double capitalOf(const SharePortfolioUser& portfolio) {
  return portfolio.cashReserveToday() + portfolio.sharesValueToday();
}

/// The choice of what the tray shows follows a portfolio to its new name.
void renameInTray(const String& oldName, const String& newName) {
  if (trayFormat != oldName)
    return;
  trayFormat = newName;
  Settings::Instance().writeString(u"Operation", u"TrayFormat", newName);
}

/// All of them by name, but for the one given.
Portfolios listOf(const OpenPortfolios& open, const String& butNot = String()) {
  Portfolios list;
  for (const auto& [name, portfolio] : open)
    if (name != butNot)
      list.push_back(portfolio.get());
  return list;
}

} // namespace

TotalCapTreeItem::TotalCapTreeItem(InvestmentTree* tree, OpenPortfolios& portfolios, XMLPortfolios& records,
                                   const NodeIcons& icons, Progress* progress)
    : InvestmentTreeItem(tree, nullptr, u"Total Investment Capital", nullptr, nullptr),
      m_portfolios(&portfolios), m_records(&records), m_icons(icons) {
  buildView([&] {
    m_summaryFrame = new SummaryFrame(page());
    loadPortfolios(progress);
    m_performance =
        new PerformanceView(page(), listOf(*m_portfolios), true, u"TotalCapPortfoliosTable", this);
    tableChanged(true);
  });
  if (!page()) {
    m_summaryFrame = nullptr;
    m_performance = nullptr;
  }
}

TotalCapTreeItem::~TotalCapTreeItem() {
  HandlerScope::forget(this);
  HandlerScope::forget(m_portfolios);
}

void TotalCapTreeItem::loadPortfolios(Progress* progress) {
  while (TreeViewItem* child = firstChild())
    tree()->removeItem(child);
  shareLimitsOfHoldings();
  for (const auto& [name, portfolio] : *m_portfolios) {
    if (progress)
      progress->step(1, String(u"Loading ") + name);
    tree()->makeItemVisible(new SharePortfolioTreeItem(investmentTree(), this, *portfolio));
  }
}

void TotalCapTreeItem::reload(const TreeState& state) {
  loadPortfolios(nullptr);
  if (m_performance)
    m_performance->setPortfolios(listOf(*m_portfolios)); // which tells tableChanged
  state.restore();
}

void TotalCapTreeItem::reloadPortfolios(const String& showPortfolio) {
  HandlerScope::whenDone(this, [this, showPortfolio] {
    m_portfoliosChanged = true;
    reload(TreeState(*investmentTree()));
    if (SharePortfolioTreeItem* shown = portfolioNode(showPortfolio))
      shown->activate();
  });
}

std::vector<SharePortfolioTreeItem*> TotalCapTreeItem::portfolioNodes() const {
  std::vector<SharePortfolioTreeItem*> nodes;
  for (TreeViewItem* child = firstChild(); child; child = child->nextSibling())
    nodes.push_back(static_cast<SharePortfolioTreeItem*>(child));
  return nodes;
}

SharePortfolioTreeItem* TotalCapTreeItem::portfolioNode(const String& name) const {
  for (SharePortfolioTreeItem* node : portfolioNodes())
    if (node->portfolio().name() == name)
      return node;
  return nullptr;
}

bool TotalCapTreeItem::takePortfoliosChanged() {
  if (!isSound())
    return false;
  return std::exchange(m_portfoliosChanged, false);
}

// ---- Summary ----

void TotalCapTreeItem::transactionMade() {
  m_portfoliosChanged = true;
  if (m_performance)
    m_performance->recordsChanged();
}

void TotalCapTreeItem::update() {
  if (!isSound())
    return;
  makeRecordsCurrent();
  if (investmentTree()->shownItem() == this) {
    m_performance->update();
    return;
  }
  m_performance->updateWhenWanted();
  showSummary(false);
}

FXint TotalCapTreeItem::onLeftClick(FXint x, FXint y) {
  if (isSound())
    makeRecordsCurrent();
  return InvestmentTreeItem::onLeftClick(x, y);
}

void TotalCapTreeItem::makeRecordsCurrent() {
  for (SharePortfolioTreeItem* node : portfolioNodes())
    node->makeRecordCurrent();
}

bool TotalCapTreeItem::everyRecordIsOfToday() const {
  const auto nodes = portfolioNodes();
  return std::all_of(nodes.begin(), nodes.end(), [](SharePortfolioTreeItem* node) {
    return node->portfolio().capitalRecord().hasDayCap(Date());
  });
}

void TotalCapTreeItem::tableChanged(bool rebuilt) {
  // After midnight a portfolio may have no record of today yet: the figures stay until the user's next
  // action.
  if (!isSound() || !m_performance || (!rebuilt && !everyRecordIsOfToday()))
    return;
  showSummary(rebuilt);
}

void TotalCapTreeItem::showSummary(bool rebuilt) {
  const Totals sums = totals();
  const std::size_t rowsWanted = sums.capital > 0.0 ? portfolioNodes().size() : 0;
  if (rebuilt || m_summaryLabels.size() != rowsWanted)
    buildSummary(sums);
  showPortfolios(sums);
  SummaryFrame::setValue(m_totalLabel, money(sums.capital));
  SummaryFrame::setValue(m_gainTodayLabel, String::toPercent(sums.gainToday));
  SummaryFrame::setValue(m_gainWeekLabel, String::toPercent(sums.gainWeek));
  m_summaryFrame->align();
  m_performance->chart().refresh();
}

TotalCapTreeItem::Totals TotalCapTreeItem::totals() const {
  Totals sums;
  for (const SharePortfolioTreeItem* node : portfolioNodes()) {
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

void TotalCapTreeItem::showPortfolios(const Totals& totals) {
  for (const SharePortfolioTreeItem* node : portfolioNodes()) {
    const SharePortfolioUser& portfolio = node->portfolio();
    const auto labels = m_summaryLabels.find(portfolio.name());
    if (labels == m_summaryLabels.end())
      continue;
    const double capital = capitalOf(portfolio);
    const double percent = totals.capital > 0.0 ? capital / totals.capital * 100.0 : 0.0;
    SummaryFrame::setValue(labels->second.capital, money(capital));
    SummaryFrame::setValue(labels->second.percent, String::toPercent(percent));
  }
}

void TotalCapTreeItem::buildSummary(const Totals& totals) {
  SummaryFrame& summary = *m_summaryFrame;
  summary.clear();
  m_summaryLabels.clear();
  summary.reserveValue(String::toPercent(100.0));
  if (totals.capital > 0.0) {
    buildPortfolioRows();
    summary.addSeparator();
  }
  summary.startRow();
  m_totalLabel = summary.addFigure(u"Total Capital");
  summary.addSeparator();
  summary.startRow();
  m_gainTodayLabel = summary.addFigure(u"Gain today");
  m_gainWeekLabel = summary.addFigure(u"Gain this week");
}

void TotalCapTreeItem::buildPortfolioRows() {
  for (const SharePortfolioTreeItem* node : portfolioNodes()) {
    const String& name = node->portfolio().name();
    m_summaryFrame->startRow();
    Labels& labels = m_summaryLabels[name];
    labels.capital = m_summaryFrame->addFigure(CAPITAL_IN + name);
    labels.percent = m_summaryFrame->addFigure(u"Percentage");
  }
}

// ---- New, renamed and deleted portfolios ----

FXint TotalCapTreeItem::onRightClick(FXint x, FXint y) {
  return static_cast<FXint>(guardedHandler(u"TotalCapTreeItem::onRightClick failed.", [&] {
    if (!checkSound())
      return;
    ContextMenu menu(tree(), this);
    menu.addCommand(u"New Share Portfolio...", ID_NEW_SHARE_PORTFOLIO);
    menu.run(x, y);
  }));
}

long TotalCapTreeItem::onNewSharePortfolio(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TotalCapTreeItem::onNewSharePortfolio failed.", [this] { newSharePortfolio(); });
}

void TotalCapTreeItem::newSharePortfolio() {
  HandlerScope scope;
  if (!checkSound())
    return;
  GetStringDialog dialog(&MainWindow::Instance(), u"New Portfolio",
                         u"Please enter the name for your new portfolio.", String(), cleanName);
  if (dialog.execute() == 0)
    return;
  if (checkNewName(dialog.text()))
    makePortfolio(dialog.text());
}

bool TotalCapTreeItem::checkNewName(const String& name) const {
  if (!m_portfolios->contains(name))
    return true;
  MainWindow::error(u"There is already another portfolio with this name!");
  return false;
}

void TotalCapTreeItem::makePortfolio(const String& name) {
  XMLSharePortfolio& portfolio = m_records->portfolios().add();
  portfolio.setPortfolioName(name);
  openPortfolio(std::make_unique<SharePortfolioUser>(portfolio, gatewayPrices()));
}

void TotalCapTreeItem::openPortfolio(std::unique_ptr<SharePortfolioUser> portfolio) {
  const String name = portfolio->name();
  m_portfolios->emplace(name, std::move(portfolio));
  reloadPortfolios(name);
}

void TotalCapTreeItem::renamePortfolio(const String& oldName, const String& newName) {
  if (!checkSound())
    return;
  const String name = cleanName(newName);
  const auto found = m_portfolios->find(oldName);
  if (found == m_portfolios->end() || name.empty() || name == oldName || !checkNewName(name))
    return;
  TreeState state(*investmentTree());
  state.rename(oldName, name);
  forgetCashWarning(*found->second);
  found->second->rename(name);
  auto entry = m_portfolios->extract(found);
  entry.key() = name;
  m_portfolios->insert(std::move(entry));
  renameInTray(oldName, name);
  ColumnChoice::rename(oldName, name);
  m_portfoliosChanged = true;
  HandlerScope::whenDone(this, [this, state] { reload(state); });
}

void TotalCapTreeItem::removeChild(TreeViewItem* child) {
  if (!checkSound())
    return;
  const String name = static_cast<SharePortfolioTreeItem*>(child)->portfolio().name();
  // By name: the node may have been made anew by then.
  HandlerScope::whenDone(this, [this, name] { deletePortfolio(name); });
}

void TotalCapTreeItem::deletePortfolio(const String& name) {
  const auto found = m_portfolios->find(name);
  if (found == m_portfolios->end())
    return;
  const TreeState state(*investmentTree());
  const String file = found->second->capitalRecord().fileName();
  dropPortfolio(name);
  m_portfoliosChanged = true;
  reload(state);
  updateBranch();
  removeFile(file);
}

/// What refers goes before what it refers to.
void TotalCapTreeItem::dropPortfolio(const String& name) {
  const auto found = m_portfolios->find(name);
  if (found == m_portfolios->end())
    return;
  forgetCashWarning(*found->second);
  if (SharePortfolioTreeItem* node = portfolioNode(name))
    tree()->removeItem(node);
  m_performance->setPortfolios(listOf(*m_portfolios, name));
  const XMLSharePortfolio& records = found->second->portfolio();
  m_portfolios->erase(found);
  removeRecords(records);
}

void TotalCapTreeItem::takePortfolios(std::vector<std::unique_ptr<XMLElement>> imported,
                                      std::function<void()> afterwards) {
  if (!checkSound())
    return;
  const auto waiting = std::make_shared<std::vector<std::unique_ptr<XMLElement>>>(std::move(imported));
  HandlerScope::whenDone(this, [this, waiting, afterwards] {
    const TreeState state(*investmentTree());
    for (auto& portfolio : *waiting)
      addPortfolio(portfolio.release());
    m_portfoliosChanged = true;
    reload(state);
    updateBranch();
    afterwards();
  });
}

/// The days of a capital record that lies on disk under that name are those of other records.
void TotalCapTreeItem::addPortfolio(XMLElement* portfolio) {
  auto& records = elementAs<XMLSharePortfolio>(*portfolio);
  const String name = records.portfolioName();
  dropPortfolio(name);
  m_records->addSubElement(portfolio, u"SharePortfolios");
  auto user = std::make_unique<SharePortfolioUser>(records, gatewayPrices());
  SharePortfolioCapitalRecordUser& record = user->capitalRecord();
  record.recordsChangedFrom(record.firstRecordDate());
  m_portfolios->emplace(name, std::move(user));
}

void TotalCapTreeItem::removeRecords(const XMLSharePortfolio& portfolio) {
  m_records->portfolios().remove(portfolio);
}

void TotalCapTreeItem::priceTyped(const String& code, const Date& date, double price) {
  for (const auto& [name, portfolio] : *m_portfolios)
    portfolio->capitalRecord().historicalPriceChanged(code, date, price);
  // Waits under a name of its own, so that it never takes the place of a change of the portfolios.
  HandlerScope::whenDone(m_portfolios, [this] { tree()->updateItems(); });
}

void TotalCapTreeItem::limitsTyped(const String& code, const PriceLimits& limits) {
  shareLimits(*m_portfolios, code, limits);
  for (const SharePortfolioTreeItem* node : portfolioNodes())
    if (SharesHeldTreeItem* held = node->sharesHeldItem(); held && held->table())
      held->table()->updateTable();
  Settings::Instance().commit(); // last, since a full disk must not keep the rest from being shown
}

void TotalCapTreeItem::shareLimitsOfHoldings() {
  bringLimitsTogether(*m_portfolios);
}

} // namespace Tallymoor
