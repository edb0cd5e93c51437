#include "views/WatchlistTreeItem.h"
#include "entry/WatchStockDialog.h"
#include "views/PriceWatch.h"
#include "views/WatchlistChart.h"
#include "views/WatchlistRootTreeItem.h"
#include "views/WatchlistSettings.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/MainWindow.h"
#include "widgets/RememberedSplitter.h"

namespace Tallymoor {

FXDEFMAP(WatchlistTreeItem)
WatchlistTreeItemMap[] = {
    FXMAPFUNC(SEL_COMMAND, WatchlistTreeItem::ID_ADD, WatchlistTreeItem::onAdd),
    FXMAPFUNC(SEL_COMMAND, WatchlistTreeItem::ID_REMOVE, WatchlistTreeItem::onRemove),
};

FXIMPLEMENT_ABSTRACT(WatchlistTreeItem, InvestmentTreeItem, WatchlistTreeItemMap,
                     ARRAYNUMBER(WatchlistTreeItemMap))

WatchlistTreeItem::WatchlistTreeItem(WatchlistRootTreeItem& root, const String& name)
    : InvestmentTreeItem(root.tree(), nullptr, name, root.icons().watchlist, root.icons().watchlist),
      m_root(&root), m_name(name) {
  buildPage(WatchlistTable::Kind::USERS_LIST, WatchlistSettings::codes(name));
}

WatchlistTreeItem::WatchlistTreeItem(WatchlistRootTreeItem& root, const String& name,
                                     const std::vector<String>& codes)
    : InvestmentTreeItem(root.tree(), nullptr, u"for " + name, root.icons().watchHeld,
                         root.icons().watchHeld),
      m_root(&root), m_name(name), m_editable(false) {
  buildPage(WatchlistTable::Kind::HELD_SHARES, codes);
}

WatchlistTreeItem::~WatchlistTreeItem() {
  HandlerScope::forget(this);
}

void WatchlistTreeItem::buildPage(WatchlistTable::Kind kind, const std::vector<String>& codes) {
  buildView([&] {
    m_splitter = new RememberedSplitter(page(), u"Y Splitter Watchlists");
    auto* frame = new FXVerticalFrame(m_splitter, LAYOUT_FILL_X | LAYOUT_FILL_Y | FRAME_SUNKEN, 0, 0, 0, 0, 4,
                                      4, 4, 4, 4, 4);
    m_table = new WatchlistTable(m_name, kind, codes, *m_root, frame);
    buildChart();
  });
  if (!page()) {
    m_table = nullptr;
    m_chart = nullptr;
  }
}

void WatchlistTreeItem::buildChart() {
  m_chart = new WatchlistChart(m_splitter, *m_root);
  m_table->setChoiceWatcher([this] { showChosen(); });
  m_priceWatch = std::make_unique<PriceWatch>(page()->getApp(), u"WatchlistTreeItem::showChosen failed.",
                                              [this](const std::set<String>& codes) {
                                                if (m_chart && codes.contains(m_chart->code()))
                                                  m_chart->refresh();
                                              });
}

/// A page that nobody sees need not have the years that a chart goes back.
void WatchlistTreeItem::showChosen() {
  if (investmentTree()->shownItem() == this)
    m_chart->choose(m_table->chosenCode());
}

void WatchlistTreeItem::update() {
  if (!isSound())
    return;
  m_splitter->recalc(); // the bar may have been moved on another page
  m_table->updateTable();
  // Last of all: where no handler is running, this node may be made anew.
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
    std::vector<String> codes = m_table->codes();
    codes.push_back(dialog.text());
    m_table->setCodes(codes);
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
