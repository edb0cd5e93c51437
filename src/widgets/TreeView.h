#pragma once
#include <fx.h>

namespace Tallymoor {

class TreeViewItem;

/// A tree that routes clicks to its nodes, which are TreeViewItems. GUI thread only.
class TreeView : public FXTreeList {
  FXDECLARE_ABSTRACT(TreeView)
public:
  enum {
    ID_TREE = FXTreeList::ID_LAST, ///< the tree's messages to itself
    ID_LAST
  };

  explicit TreeView(FXComposite* parent);
  ~TreeView() override;

  /// updateBranch on every root node.
  virtual void updateItems();

  TreeViewItem* firstRoot() const;
  /// True when all nodes are sound.
  bool isSound() const;
  /// Makes the node the current and only selected one, without any message.
  void selectQuietly(TreeViewItem* item);

  long onRightMouseUp(FXObject* sender, FXSelector selector, void* data);
  long onLeftMouseUp(FXObject* sender, FXSelector selector, void* data);
  /// A node reached by a key is scrolled into view; the menu key opens its popup.
  long onKeyPress(FXObject* sender, FXSelector selector, void* data);

private:
  void openPopupOfCurrentNode();
  TreeViewItem* itemAt(const FXEvent& event) const;
};

} // namespace Tallymoor
