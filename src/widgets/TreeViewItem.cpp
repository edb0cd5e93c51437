#include "widgets/TreeViewItem.h"
#include "foundation/Exception.h"
#include "widgets/ToolkitText.h"
#include "widgets/TreeView.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(TreeViewItem, FXTreeItem, nullptr, 0)

TreeViewItem::TreeViewItem(TreeView* tree, TreeViewItem* parentItem, const String& label, FXIcon* openIcon,
                           FXIcon* closedIcon)
    : FXTreeItem(toFox(label), openIcon, closedIcon), m_tree(tree), m_parentItem(parentItem) {
  tree->appendItem(parentItem, this, FALSE);
}

void TreeViewItem::update() {}

FXint TreeViewItem::onRightClick(FXint, FXint) {
  return 0;
}

FXint TreeViewItem::onLeftClick(FXint, FXint) {
  return 0;
}

void TreeViewItem::removeChild(TreeViewItem*) {
  throw Exception(u"TreeViewItem::removeChild");
}

TreeViewItem* TreeViewItem::firstChild() const {
  return static_cast<TreeViewItem*>(getFirst());
}

TreeViewItem* TreeViewItem::nextSibling() const {
  return static_cast<TreeViewItem*>(getNext());
}

String TreeViewItem::label() const {
  return fromFox(getText());
}

FXint TreeViewItem::bottom() const {
  return y + getHeight(m_tree);
}

bool TreeViewItem::isSound() const {
  if (!m_sound)
    return false;
  for (const TreeViewItem* child = firstChild(); child; child = child->nextSibling())
    if (!child->isSound())
      return false;
  return true;
}

void TreeViewItem::updateBranch() {
  update();
  // Only now: update may have given the node other children.
  for (TreeViewItem* child = firstChild(); child; child = child->nextSibling())
    child->updateBranch();
}

} // namespace Tallymoor
