#pragma once
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

class InvestmentTree;
class InvestmentTreeItem;
class TreeViewItem;

/// What the user sees of a tree, by the names of nodes and not by the nodes: which page is shown, which node
/// is current, which ones are open. Taken before nodes are rebuilt and restored afterwards.
class TreeState {
public:
  explicit TreeState(InvestmentTree& tree);

  /// From now on the name of a node just below the root reads differently.
  void rename(const String& oldName, const String& newName);
  /// Opens what was open, and shows the page that was shown: that of the same node, otherwise of the nearest
  /// one above it that is still there.
  void restore() const;

private:
  using Path = std::vector<String>; ///< labels from the root down

  static Path pathOf(const TreeViewItem* item);
  void collectExpanded(TreeViewItem* item);
  /// The node at the path's end, or the last one on the way that is there; null in an empty tree.
  TreeViewItem* find(const Path& path) const;

  InvestmentTree& m_tree;
  Path m_shown;
  Path m_current;
  std::vector<Path> m_expanded;
};

} // namespace Tallymoor
