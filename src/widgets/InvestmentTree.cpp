#include "widgets/InvestmentTree.h"
#include "widgets/InvestmentTreeItem.h"
#include "widgets/PageSwitcher.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(InvestmentTree, TreeView, nullptr, 0)

namespace {

constexpr FXint SPACING = 4;

} // namespace

InvestmentTree::InvestmentTree(FXComposite* parent, FXColor backColour, FXColor textColour)
    : TreeView(parent), m_backColour(backColour), m_textColour(textColour) {
  setBackColor(backColour);
}

InvestmentTree::~InvestmentTree() {
  // Nodes speak to their tree when they lose their page, so they go while it is still whole.
  clearItems(FALSE);
}

FXVerticalFrame* InvestmentTree::createPage() {
  return new FXVerticalFrame(m_switcher, LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 0, 0, 0, 0, SPACING,
                             SPACING);
}

void InvestmentTree::updateItems() {
  if (m_beforeUpdate)
    m_beforeUpdate();
  TreeView::updateItems();
}

void InvestmentTree::showFirst() {
  if (m_beforeUpdate)
    m_beforeUpdate();
  for (TreeViewItem* root = firstRoot(); root; root = root->nextSibling())
    root->update();
  if (TreeViewItem* first = firstRoot(); first && !m_shownItem)
    static_cast<InvestmentTreeItem*>(first)->activate();
}

void InvestmentTree::showPageOf(InvestmentTreeItem* item) {
  FXVerticalFrame* const page = item->page();
  if (!page)
    return;
  if (m_shownItem != item && m_switcher->inFocusChain())
    setFocus();
  m_shownItem = item;
  m_switcher->showPage(page);
}

void InvestmentTree::pageGone(const InvestmentTreeItem* item) {
  if (m_shownItem == item)
    m_shownItem = nullptr;
  // The switcher knows its page by position, which the pages behind the lost one have changed.
  if (m_shownItem)
    m_switcher->setCurrent(m_switcher->indexOfChild(m_shownItem->madePage()), FALSE);
}

} // namespace Tallymoor
