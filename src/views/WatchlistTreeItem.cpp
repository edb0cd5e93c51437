#include "views/WatchlistTreeItem.h"
#include "entry/WatchStockDialog.h"
#include "foundation/Exception.h"
#include "foundation/RunTimeSettings.h"
#include "market/RequestedClose.h"
#include "views/IndicatorCells.h"
#include "views/PriceLimits.h"
#include "views/UnseenStocks.h"
#include "views/WatchlistChart.h"
#include "views/WatchlistRootTreeItem.h"
#include "views/WatchlistSettings.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/MainWindow.h"
#include "widgets/RememberedSplitter.h"
#include <optional>
#include <set>

namespace Tallymoor {

FXDEFMAP(WatchlistTreeItem)
WatchlistTreeItemMap[] = {
    FXMAPFUNC(SEL_COMMAND, WatchlistTreeItem::ID_ADD, WatchlistTreeItem::onAdd),
    FXMAPFUNC(SEL_COMMAND, WatchlistTreeItem::ID_REMOVE, WatchlistTreeItem::onRemove),
};

FXIMPLEMENT_ABSTRACT(WatchlistTreeItem, InvestmentTreeItem, WatchlistTreeItemMap,
                     ARRAYNUMBER(WatchlistTreeItemMap))

namespace {

/// The limits for warnings.
PriceLimits stockLimits(const String& code) {
  return autoMinMaxPrices ? automaticLimits(code) : PriceLimits::ofStock(code);
}

} // namespace

WatchlistTreeItem::WatchlistTreeItem(WatchlistRootTreeItem& root, const String& name)
    : InvestmentTreeItem(root.tree(), nullptr, name, root.icons().watchlist, root.icons().watchlist),
      m_root(&root), m_name(name), m_codes(WatchlistSettings::codes(name)) {
  watchUnseen();
}

WatchlistTreeItem::WatchlistTreeItem(WatchlistRootTreeItem& root, const String& name,
                                     const std::vector<String>& codes)
    : InvestmentTreeItem(root.tree(), nullptr, u"for " + name, root.icons().watchHeld,
                         root.icons().watchHeld),
      m_root(&root), m_name(name), m_editable(false), m_codes(codes) {
  watchUnseen();
}

WatchlistTreeItem::~WatchlistTreeItem() {
  HandlerScope::forget(this);
}

void WatchlistTreeItem::makeViews() {
  using Kind = WatchlistTable::Kind;
  m_splitter = new RememberedSplitter(page(), u"Y Splitter Watchlists");
  auto* frame = new FXVerticalFrame(m_splitter, LAYOUT_FILL_X | LAYOUT_FILL_Y | FRAME_SUNKEN, 0, 0, 0, 0, 4,
                                    4, 4, 4, 4, 4);
  m_table =
      new WatchlistTable(m_name, m_editable ? Kind::USERS_LIST : Kind::HELD_SHARES, m_codes, *m_root, frame);
  buildChart();
  m_unseen.reset(); // after the table, which watches its codes itself: so no price is lost
}

void WatchlistTreeItem::viewsGone() {
  m_table = nullptr;
  m_splitter = nullptr;
  m_chart = nullptr;
}

void WatchlistTreeItem::watchUnseen() {
  if (!m_unseen)
    m_unseen = std::make_unique<UnseenStocks>(tree()->getApp(), stockLimits, [](const String& code) {
      const std::optional<double> price = requestedClose(code, Date());
      if (!price)
        throw Exception(u"WatchlistTreeItem - no price for " + code);
      return *price;
    });
  m_unseen->watch(std::set<String>(m_codes.begin(), m_codes.end()));
  if (m_root->isComplete())
    m_unseen->checkAll();
}

bool WatchlistTreeItem::checkNextLimit() {
  return m_unseen && m_unseen->checkNext();
}

WatchlistTable* WatchlistTreeItem::table() {
  page();
  return m_table;
}

WatchlistChart* WatchlistTreeItem::chart() {
  page();
  return m_chart;
}

void WatchlistTreeItem::setCodes(const std::vector<String>& codes) {
  m_codes = codes;
  if (m_table)
    m_table->setCodes(codes);
  else
    watchUnseen();
}

void WatchlistTreeItem::buildChart() {
  m_chart = new WatchlistChart(m_splitter, *m_root);
  m_table->setChoiceWatcher([this] { showChosen(); });
}

/// A hidden page does not need the years that a chart shows.
void WatchlistTreeItem::showChosen() {
  if (investmentTree()->shownItem() == this)
    m_chart->choose(m_table->chosenCode());
}

void WatchlistTreeItem::update() {
  const bool isFilled = takePageIsNew();
  if (!isSound())
    return;
  if (!m_table) {
    watchUnseen();
  } else if (isFilled) {
    showChosen(); // when the table was filled, the page was not in sight yet
  } else {
    m_splitter->recalc(); // the bar may have been moved on another page
    m_table->updateTable();
  }
  // Last of all: where no handler is running, this node may be rebuilt.
  m_root->update();
}

FXint WatchlistTreeItem::onRightClick(FXint x, FXint y) {
  return static_cast<FXint>(guardedHandler(u"WatchlistTreeItem::onRightClick failed.", [&] {
    if (!checkSound())
      return;
    ContextMenu menu(tree(), this);
    menu.addCommand(u"Add a stock to watch...", ID_ADD);
    menu.addSeparator();
    menu.addCommand(String(u"Remove ") + label() + u"...", ID_REMOVE);
    menu.run(x, y);
  }));
}

long WatchlistTreeItem::onAdd(FXObject*, FXSelector, void*) {
  return guardedHandler(u"WatchlistTreeItem::onAdd failed.", [this] {
    if (!checkSound())
      return;
    WatchStockDialog dialog(&MainWindow::Instance(), WatchlistSettings::cleanCode);
    if (dialog.execute() == 0)
      return;
    WatchlistSettings::addCode(m_name, dialog.text());
    setCodes(WatchlistSettings::codes(m_name));
  });
}

long WatchlistTreeItem::onRemove(FXObject*, FXSelector, void*) {
  return guardedHandler(u"WatchlistTreeItem::onRemove failed.", [this] {
    if (!checkSound() || !MainWindow::question(String(u"Do you want to remove ") + label() + u"?"))
      return;
    WatchlistSettings::remove(m_name);
    m_root->refill();
  });
}

} // namespace Tallymoor
