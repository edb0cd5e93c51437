#include "widgets/TreeView.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include "widgets/TreeViewItem.h"

namespace Tallymoor {

FXDEFMAP(TreeView)
treeViewMap[] = {
    FXMAPFUNC(SEL_RIGHTBUTTONRELEASE, TreeView::ID_TREE, TreeView::onRightMouseUp),
    FXMAPFUNC(SEL_LEFTBUTTONRELEASE, TreeView::ID_TREE, TreeView::onLeftMouseUp),
    FXMAPFUNC(SEL_KEYPRESS, 0, TreeView::onKeyPress),
};

FXIMPLEMENT_ABSTRACT(TreeView, FXTreeList, treeViewMap, ARRAYNUMBER(treeViewMap))

namespace {

constexpr FXuint STYLE = TREELIST_BROWSESELECT | TREELIST_SHOWS_LINES | TREELIST_SHOWS_BOXES | LAYOUT_FILL_X |
                         LAYOUT_FILL_Y | FRAME_RAISED | FRAME_THICK;

/// The toolkit's answers of hitItem.
constexpr FXint HIT_TEXT = 2;
constexpr FXint HIT_BOX = 3;

} // namespace

TreeView::TreeView(FXComposite* parent) : FXTreeList(parent, nullptr, ID_TREE, STYLE) {
  setTarget(this);
}

TreeView::~TreeView() = default;

void TreeView::updateItems() {
  for (TreeViewItem* root = firstRoot(); root; root = root->nextSibling())
    root->updateBranch();
}

TreeViewItem* TreeView::firstRoot() const {
  return static_cast<TreeViewItem*>(getFirstItem());
}

bool TreeView::isSound() const {
  for (const TreeViewItem* root = firstRoot(); root; root = root->nextSibling())
    if (!root->isSound())
      return false;
  return true;
}

void TreeView::selectQuietly(TreeViewItem* item) {
  killSelection(FALSE);
  setCurrentItem(item, FALSE);
  selectItem(item, FALSE);
}

TreeViewItem* TreeView::itemAt(const FXEvent& event) const {
  return static_cast<TreeViewItem*>(getItemAt(event.win_x, event.win_y));
}

long TreeView::onRightMouseUp(FXObject*, FXSelector, void* data) {
  const FXEvent event = *static_cast<FXEvent*>(data);
  return guardedHandler(u"TreeView::onRightMouseUp failed.", [&] {
    if (TreeViewItem* item = itemAt(event))
      item->onRightClick(event.root_x, event.root_y);
  });
}

/// The toolkit is told that the click was handled: what it would do next, expanding by a double click among
/// it, refers to the item that is current by then.
long TreeView::onLeftMouseUp(FXObject*, FXSelector, void* data) {
  const FXEvent event = *static_cast<FXEvent*>(data);
  return guardedHandler(u"TreeView::onLeftMouseUp failed.", [&] {
    TreeViewItem* item = itemAt(event);
    if (!item)
      return;
    const FXint hit = hitItem(item, event.win_x, event.win_y);
    if (hit == HIT_BOX)
      return;
    // A press on one node and a release on another: what is shown is also what is selected.
    if (!item->isSelected())
      selectQuietly(item);
    if (hit == HIT_TEXT && !item->isExpanded()) {
      expandTree(item, FALSE);
      recalc();
    }
    item->onLeftClick(event.win_x, event.win_y);
  });
}

long TreeView::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  if (isMenuKey(*static_cast<FXEvent*>(data))) {
    openPopupOfCurrentNode();
    return 1;
  }
  const FXTreeItem* before = getCurrentItem();
  const long handled = FXTreeList::onKeyPress(sender, selector, data);
  auto* item = static_cast<TreeViewItem*>(getCurrentItem());
  if (item && item != before)
    guardedHandler(u"TreeView::onKeyPress failed.", [item] { item->onLeftClick(0, 0); });
  return handled;
}

void TreeView::openPopupOfCurrentNode() {
  guardedHandler(u"TreeView::onRightMouseUp failed.", [this] {
    auto* item = static_cast<TreeViewItem*>(getCurrentItem());
    if (!item)
      return;
    makeItemVisible(item);
    FXint x = 0, y = 0;
    translateCoordinatesTo(x, y, getRoot(), getViewportWidth() / 2, item->bottom() + getYPosition());
    item->onRightClick(x, y);
  });
}

} // namespace Tallymoor
