#pragma once
#include "ViewsTest.h"
#include "foundation/RunTimeSettings.h"
#include "views/PriceLimits.h"
#include "views/WatchHeldSharesTreeItem.h"
#include "views/WatchlistCells.h"
#include "views/WatchlistRootTreeItem.h"
#include "views/WatchlistSettings.h"
#include "views/WatchlistTable.h"
#include "views/WatchlistTreeItem.h"
#include "widgets/PageSwitcher.h"
#include <memory>
#include <stdexcept>

namespace Tallymoor {

/// Like ViewsTest, with the tree of watchlists below the tree of portfolios.
class WatchlistsTest : public ViewsTest {
protected:
  void SetUp() override {
    ViewsTest::SetUp();
    auto* splitter = new FXSplitter(mainWindow().contentFrame(), LAYOUT_FILL_X | LAYOUT_FILL_Y);
    m_watchTree = new InvestmentTree(splitter, FXRGB(230, 230, 240), FXRGB(0, 0, 60));
    m_watchTree->setSwitcher(new PageSwitcher(splitter, LAYOUT_FILL_X | LAYOUT_FILL_Y));
    splitter->setSplit(0, 180);
    splitter->create();
  }
  void TearDown() override {
    m_lists.reset();
    autoMinMaxPrices = false;
    ViewsTest::TearDown();
  }

  /// Creates both trees like the main window.
  void showTrees(const NodeIcons& icons = {}) {
    showTree(icons);
    asHandler([&] {
      makeLists(icons);
      m_watchTree->showFirst();
    });
    settle();
  }
  void makeLists(const NodeIcons& icons = {}) {
    m_lists = std::make_unique<WatchlistRootTreeItem>(&root(), m_watchTree, icons, [this] { ++bought; });
  }
  /// Adds a user's list before the trees are shown.
  static void addList(const String& name, const std::vector<String>& codes) {
    WatchlistSettings::add(name);
    for (const String& code : codes)
      WatchlistSettings::addCode(name, code);
  }
  /// "Main", with one stock at 6.00 until 1 March and 6.60 today. A portfolio has 5,000.00 and no shares.
  void watchOne() {
    market().setHistory(u"AAA.AX", Date(2024, 12, 1), Date(2026, 3, 2), 6.0);
    market().setDay(u"AAA.AX", Date(2026, 3, 3), 6.6);
    addPortfolio(u"Trading", 5000.0);
    addList(u"Main", {u"AAA.AX"});
  }
  void viewDateOfBoth(const Date& date) {
    viewDate(date);
    asHandler([&] { m_watchTree->updateItems(); });
    settle();
  }

  WatchlistRootTreeItem& lists() { return *m_lists; }
  InvestmentTree& watchTree() { return *m_watchTree; }
  WatchlistTreeItem& list(const String& name = u"Main") {
    WatchlistTreeItem* found = m_lists->watchlist(name);
    if (!found)
      throw std::runtime_error("no list " + name.toUTF8());
    return *found;
  }
  WatchlistTable& table(const String& name = u"Main") {
    return *withHistory([&] { return list(name).table(); });
  }
  /// The automatic list of a portfolio.
  WatchlistTreeItem& heldList(const String& portfolio = u"Trading") {
    for (TreeViewItem* item = m_watchTree->firstRoot(); item; item = item->nextSibling()) {
      auto& node = static_cast<WatchlistTreeItem&>(*item);
      if (!node.editable() && node.name() == portfolio)
        return node;
    }
    throw std::runtime_error("no list for " + portfolio.toUTF8());
  }
  std::vector<std::string> listLabels() {
    std::vector<std::string> labels;
    for (TreeViewItem* item = m_watchTree->firstRoot(); item; item = item->nextSibling())
      labels.push_back(item->label().toUTF8());
    return labels;
  }
  /// Creates a list by the window's command.
  void makeList(const std::string& name) {
    whenModal("Add New Watchlist", [this, name](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), name);
      press(dialog, "OK");
    });
    lists().onNew();
    letEventsPass();
  }
  /// Adds a stock by the popup of the list's node.
  void addStock(const String& list, const std::function<void(FXWindow& dialog)>& enter) {
    choose(this->list(list), "Add a stock to watch...",
           [&] { whenModal("Add Stock to Watch", [enter](FXWindow& dialog) { enter(dialog); }); });
  }
  void addStock(const String& list, const std::string& code) {
    addStock(list, [this, code](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), code);
      press(dialog, "OK");
    });
  }

  int bought = 0; ///< Number of calls of the window's purchase command.

private:
  InvestmentTree* m_watchTree = nullptr;
  std::unique_ptr<WatchlistRootTreeItem> m_lists;
};

} // namespace Tallymoor
