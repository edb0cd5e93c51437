#pragma once
#include "foundation/String.h"
#include <fx.h>

namespace Tallymoor {

class TreeView;

/// A node of a TreeView, which knows how to answer a click. Making a node puts it into the tree, and the tree
/// owns it.
class TreeViewItem : public FXTreeItem {
  FXDECLARE_ABSTRACT(TreeViewItem)
public:
  /// parentItem is null for a root node; the icons may be null and are not owned.
  TreeViewItem(TreeView* tree, TreeViewItem* parentItem, const String& label, FXIcon* openIcon,
               FXIcon* closedIcon);

  /// Brings what the node shows up to date.
  virtual void update();
  /// A click at this position of the screen, and of the tree. The result is 0 when the node did nothing.
  virtual FXint onRightClick(FXint x, FXint y);
  virtual FXint onLeftClick(FXint x, FXint y);
  /// Throws Exception: only the one node that can lose a child has an answer.
  virtual void removeChild(TreeViewItem* child);

  TreeView* tree() const { return m_tree; }
  TreeViewItem* parentItem() const { return m_parentItem; }
  TreeViewItem* firstChild() const;
  TreeViewItem* nextSibling() const;
  String label() const;
  /// Where the node ends, in the contents of the tree.
  FXint bottom() const;

  /// False when this node or any node below it could not be built.
  bool isSound() const;
  void setSound(bool sound) { m_sound = sound; }
  /// update, then the same for each child, depth first.
  void updateBranch();

private:
  TreeView* m_tree;
  TreeViewItem* m_parentItem;
  bool m_sound = true;
};

} // namespace Tallymoor
