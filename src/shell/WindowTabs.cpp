#include "shell/WindowTabs.h"
#include "foundation/Settings.h"
#include "widgets/Colours.h"
#include "widgets/InvestmentTree.h"
#include "widgets/PageSwitcher.h"
#include "widgets/TextSize.h"

namespace Tallymoor {

namespace {

constexpr int TREE_WIDTH = 150;

/// "DarkOliveGreen4", laid over white.
FXColor portfolioTreeColour() {
  return makeColour(110, 139, 61, 100);
}

/// "SteelBlue", the same.
FXColor watchlistTreeColour() {
  return makeColour(70, 130, 180, 100);
}

} // namespace

WindowTabs::WindowTabs(FXComposite* parent, FXFont* labelFont, FXObject* target, FXSelector selector)
    : m_book(new FXTabBook(parent, target, selector, LAYOUT_FILL_X | LAYOUT_FILL_Y)),
      m_portfolios(buildTab("  Portfolios  ", labelFont, portfolioTreeColour(), u"X Splitter Portfolios")),
      m_watchlists(buildTab("  Watchlists  ", labelFont, watchlistTreeColour(), u"X Splitter Watchlists")) {}

WindowTabs::Tab WindowTabs::buildTab(const char* label, FXFont* labelFont, FXColor treeColour,
                                     const String& widthKey) {
  Tab tab;
  tab.widthKey = widthKey;
  (new FXTabItem(m_book, label))->setFont(labelFont);
  tab.splitter = new FXSplitter(m_book, SPLITTER_HORIZONTAL | SPLITTER_TRACKING | FRAME_RAISED |
                                            LAYOUT_FILL_X | LAYOUT_FILL_Y);
  const auto half = [&tab] {
    return new FXVerticalFrame(tab.splitter, FRAME_SUNKEN | LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 0, 0,
                               0, 0, 0, 0);
  };
  tab.tree = new InvestmentTree(half(), treeColour, FXRGB(0, 0, 0));
  tab.tree->setSwitcher(new PageSwitcher(half(), LAYOUT_FILL_X | LAYOUT_FILL_Y));
  tab.splitter->setSplit(0, static_cast<FXint>(Settings::Instance().readUnsigned(u"Gui Settings", widthKey,
                                                                                 scaledToText(TREE_WIDTH))));
  return tab;
}

void WindowTabs::refreshViews(bool repaintTrees) {
  for (InvestmentTree* tree : {m_portfolios.tree, m_watchlists.tree}) {
    tree->updateItems();
    if (repaintTrees)
      tree->update();
  }
}

void WindowTabs::tabOpened() {
  // What was bought and sold meanwhile stands in the lists as well.
  if (m_book->getCurrent() == WATCHLISTS) {
    if (m_watchlists.tree->shownItem())
      m_watchlists.tree->updateItems();
    else
      m_watchlists.tree->showFirst();
  }
  m_portfolios.tree->update();
  m_watchlists.tree->update();
  m_book->update();
}

bool WindowTabs::showFirst() {
  m_portfolios.tree->showFirst();
  return m_portfolios.tree->isSound() && m_watchlists.tree->isSound();
}

void WindowTabs::portfoliosLoaded() {
  if (m_book->getCurrent() == WATCHLISTS)
    m_watchlists.tree->updateItems();
}

void WindowTabs::rememberWidths() const {
  for (const Tab& tab : {m_portfolios, m_watchlists})
    Settings::Instance().writeUnsigned(u"Gui Settings", tab.widthKey,
                                       static_cast<std::uint32_t>(tab.splitter->getSplit(0)));
}

} // namespace Tallymoor
