#include "views/TotalCapTreeItem.h"
#include "foundation/FileReplacement.h"
#include "foundation/LengthyFunctions.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "market/MarketPrices.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharedLimits.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/TotalCapPage.h"
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

/// The choice of what the tray shows follows a portfolio to its new name.
void renameInTray(const String& oldName, const String& newName) {
  if (trayFormat != oldName)
    return;
  trayFormat = newName;
  Settings::Instance().writeString(u"Operation", u"TrayFormat", newName);
}

} // namespace

TotalCapTreeItem::TotalCapTreeItem(InvestmentTree* tree, OpenPortfolios& portfolios, XMLPortfolios& records,
                                   const NodeIcons& icons, Progress* progress)
    : InvestmentTreeItem(tree, nullptr, u"Total Investment Capital", nullptr, nullptr),
      m_portfolios(&portfolios), m_records(&records), m_icons(icons) {
  buildView([&] { loadPortfolios(progress); });
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
  bringAllUpToDate();
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

// ---- What waits for idle time ----

bool TotalCapTreeItem::bringNextUpToDate() {
  for (SharePortfolioTreeItem* node : portfolioNodes()) {
    if (!node->isUpToDate()) {
      node->ensureRecord();
      return true;
    }
    if (SharesHeldTreeItem* held = node->sharesHeldItem(); held && held->checkNextLimit())
      return true;
  }
  return false;
}

void TotalCapTreeItem::bringAllUpToDate() {
  for (SharePortfolioTreeItem* node : portfolioNodes())
    node->bringUpToDate();
  recordCame();
  while (bringNextUpToDate()) { // the limits
  }
}

bool TotalCapTreeItem::isComplete() const {
  const auto nodes = portfolioNodes();
  return std::all_of(nodes.begin(), nodes.end(),
                     [](const SharePortfolioTreeItem* node) { return node->isUpToDate(); });
}

void TotalCapTreeItem::recordCame() {
  if (!m_views)
    return;
  if (isComplete())
    m_views->showAll(listOf(*m_portfolios));
  else
    m_views->showKnown();
}

// ---- The page ----

void TotalCapTreeItem::makeViews() {
  m_views = std::make_unique<TotalCapPage>(*this, isComplete() ? listOf(*m_portfolios) : Portfolios());
}

void TotalCapTreeItem::viewsGone() {
  m_views.reset();
}

void TotalCapTreeItem::freshenViews() {
  if (m_views)
    m_views->freshen();
}

PerformanceView* TotalCapTreeItem::performance() {
  page();
  return m_views ? &m_views->performance() : nullptr;
}

void TotalCapTreeItem::figuresChanged() {
  if (m_views)
    m_views->tableChanged(false);
}

void TotalCapTreeItem::transactionMade() {
  m_portfoliosChanged = true;
  if (m_views)
    m_views->recordsChanged();
}

void TotalCapTreeItem::update() {
  const bool isFilled = takePageIsNew();
  if (!isSound())
    return;
  makeRecordsCurrent();
  if (m_views && !isFilled)
    m_views->update();
}

FXint TotalCapTreeItem::onLeftClick(FXint x, FXint y) {
  if (isSound())
    makeRecordsCurrent();
  return InvestmentTreeItem::onLeftClick(x, y);
}

void TotalCapTreeItem::makeRecordsCurrent() {
  for (SharePortfolioTreeItem* node : portfolioNodes())
    if (node->isUpToDate())
      node->makeRecordCurrent();
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
  if (!m_portfolios->contains(oldName) || name.empty() || name == oldName || !checkNewName(name))
    return;
  TreeState state(*investmentTree());
  state.rename(oldName, name);
  Tallymoor::renamePortfolio(*m_portfolios, oldName, name);
  renameInTray(oldName, name);
  ColumnChoice::rename(oldName, name);
  m_portfoliosChanged = true;
  HandlerScope::whenDone(this, [this, state] { reload(state); });
}

void TotalCapTreeItem::removeChild(TreeViewItem* child) {
  if (!checkSound())
    return;
  const String name = static_cast<SharePortfolioTreeItem*>(child)->portfolio().name();
  // By name: the node may have been rebuilt by then.
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
  if (!m_portfolios->contains(name))
    return;
  if (SharePortfolioTreeItem* node = portfolioNode(name))
    tree()->removeItem(node);
  if (m_views)
    m_views->setPortfolios(isComplete() ? listOf(*m_portfolios, name) : Portfolios());
  removePortfolio(*m_portfolios, *m_records, name);
}

void TotalCapTreeItem::takePortfolios(std::vector<std::unique_ptr<XMLElement>> imported,
                                      const std::function<void()>& afterwards) {
  if (!checkSound())
    return;
  const auto waiting = std::make_shared<std::vector<std::unique_ptr<XMLElement>>>(std::move(imported));
  HandlerScope::whenDone(this, [this, waiting, afterwards] {
    const TreeState state(*investmentTree());
    for (auto& portfolio : *waiting) {
      dropPortfolio(elementAs<XMLSharePortfolio>(*portfolio).portfolioName());
      addPortfolio(*m_portfolios, *m_records, std::move(portfolio));
    }
    m_portfoliosChanged = true;
    reload(state);
    updateBranch();
    afterwards();
  });
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
    if (SharesHeldTreeItem* held = node->sharesHeldItem())
      held->limitsChanged();
  Settings::Instance().commit(); // last, since a full disk must not keep the rest from being shown
}

void TotalCapTreeItem::shareLimitsOfHoldings() {
  bringLimitsTogether(*m_portfolios);
}

} // namespace Tallymoor
