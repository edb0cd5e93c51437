#include "views/WatchlistRootTreeItem.h"
#include "books/SharePortfolioUser.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "views/TreeState.h"
#include "views/WatchHeldSharesTreeItem.h"
#include "views/WatchlistSettings.h"
#include "widgets/GetStringDialog.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/MainWindow.h"
#include "xml/CleanName.h"

namespace Tallymoor {

namespace {

WatchlistTreeItem* asWatchlist(TreeViewItem* item) {
  return static_cast<WatchlistTreeItem*>(item);
}

} // namespace

WatchlistRootTreeItem::WatchlistRootTreeItem(TotalCapTreeItem* totalCapital, InvestmentTree* tree,
                                             const NodeIcons& icons, std::function<void()> buy)
    : m_totalCapital(totalCapital), m_tree(tree), m_icons(icons), m_buy(std::move(buy)) {
  m_tree->setBeforeUpdate([this] { update(); });
  fill();
}

WatchlistRootTreeItem::~WatchlistRootTreeItem() {
  HandlerScope::forget(this);
  m_tree->setBeforeUpdate({});
  m_tree->clearItems(FALSE);
}

// ---- Nodes ----

std::vector<WatchlistRootTreeItem::Node> WatchlistRootTreeItem::wantedNodes() const {
  std::vector<Node> nodes;
  for (const SharePortfolioTreeItem* portfolio : m_totalCapital->portfolioNodes())
    nodes.push_back({false, portfolio->portfolio().name()});
  for (const String& name : WatchlistSettings::names())
    nodes.push_back({true, name});
  return nodes;
}

std::vector<WatchlistRootTreeItem::Node> WatchlistRootTreeItem::presentNodes() const {
  std::vector<Node> nodes;
  for (TreeViewItem* item = m_tree->firstRoot(); item; item = item->nextSibling())
    nodes.push_back({asWatchlist(item)->editable(), asWatchlist(item)->name()});
  return nodes;
}

void WatchlistRootTreeItem::fill() {
  m_tree->clearItems(FALSE);
  for (const Node& node : wantedNodes())
    if (node.editable)
      new WatchlistTreeItem(*this, node.name);
    else
      m_tree->makeItemVisible(new WatchHeldSharesTreeItem(*this, *portfolio(node.name)));
}

void WatchlistRootTreeItem::update() {
  if (m_totalCapital->takePortfoliosChanged())
    refill();
}

void WatchlistRootTreeItem::refill() {
  HandlerScope::whenDone(this, [this] { refillNow(String()); });
}

void WatchlistRootTreeItem::refillNow(const String& show) {
  if (presentNodes() != wantedNodes()) {
    const TreeState state(*m_tree);
    fill();
    state.restore();
  }
  if (WatchlistTreeItem* list = show.empty() ? nullptr : watchlist(show))
    list->activate();
  else if (!m_tree->shownItem() && m_tree->firstRoot())
    asWatchlist(m_tree->firstRoot())->activate();
}

WatchlistTreeItem* WatchlistRootTreeItem::watchlist(const String& name) const {
  for (TreeViewItem* item = m_tree->firstRoot(); item; item = item->nextSibling())
    if (asWatchlist(item)->editable() && asWatchlist(item)->name() == name)
      return asWatchlist(item);
  return nullptr;
}

bool WatchlistRootTreeItem::isComplete() const {
  return m_totalCapital->isComplete();
}

bool WatchlistRootTreeItem::checkNextLimit() {
  for (TreeViewItem* item = m_tree->firstRoot(); item; item = item->nextSibling())
    if (asWatchlist(item)->checkNextLimit())
      return true;
  return false;
}

void WatchlistRootTreeItem::onNew() {
  guardedHandler(u"WatchlistRootTreeItem::onNew failed.", [this] {
    GetStringDialog dialog(&MainWindow::Instance(), u"Add New Watchlist",
                           u"Enter the name for the new watchlist.", String(), cleanName);
    if (dialog.execute() == 0)
      return;
    const String name = dialog.text();
    WatchlistSettings::add(name);
    HandlerScope::whenDone(this, [this, name] { refillNow(name); });
  });
}

// ---- What the lists ask ----

const SharePortfolioUser* WatchlistRootTreeItem::portfolio(const String& name) const {
  const SharePortfolioTreeItem* node = m_totalCapital->portfolioNode(name);
  return node ? &node->portfolio() : nullptr;
}

void WatchlistRootTreeItem::buyShares() {
  m_buy();
  update();
}

void WatchlistRootTreeItem::limitsTyped(const String& code, const PriceLimits& limits) {
  m_totalCapital->limitsTyped(code, limits);
}

std::optional<double> WatchlistRootTreeItem::capitalOf(const String& portfolio) const {
  double sum = 0.0;
  for (const SharePortfolioTreeItem* node : m_totalCapital->portfolioNodes()) {
    if (!portfolio.empty() && node->portfolio().name() != portfolio)
      continue;
    if (!node->isUpToDate())
      return std::nullopt;
    sum += node->portfolio().cashReserveToday() + node->portfolio().sharesValueToday();
  }
  return sum;
}

Portfolios WatchlistRootTreeItem::portfolios() const {
  Portfolios all;
  for (const SharePortfolioTreeItem* node : m_totalCapital->portfolioNodes())
    all.push_back(&node->portfolio());
  return all;
}

} // namespace Tallymoor
