#include "views/TreeState.h"
#include "widgets/InvestmentTree.h"
#include "widgets/InvestmentTreeItem.h"
#include <algorithm>

namespace Tallymoor {

TreeState::TreeState(InvestmentTree& tree) : m_tree(tree) {
  m_shown = pathOf(tree.shownItem());
  m_current = pathOf(static_cast<TreeViewItem*>(tree.getCurrentItem()));
  collectExpanded(tree.firstRoot());
}

TreeState::Path TreeState::pathOf(const TreeViewItem* item) {
  Path path;
  for (; item; item = item->parentItem())
    path.push_back(item->label());
  std::reverse(path.begin(), path.end());
  return path;
}

void TreeState::collectExpanded(TreeViewItem* item) {
  for (; item; item = item->nextSibling()) {
    if (item->isExpanded())
      m_expanded.push_back(pathOf(item));
    collectExpanded(item->firstChild());
  }
}

void TreeState::rename(const String& oldName, const String& newName) {
  const auto renameIn = [&](Path& path) {
    if (path.size() > 1 && path[1] == oldName)
      path[1] = newName;
  };
  renameIn(m_shown);
  renameIn(m_current);
  std::for_each(m_expanded.begin(), m_expanded.end(), renameIn);
}

TreeViewItem* TreeState::find(const Path& path) const {
  TreeViewItem* found = nullptr;
  TreeViewItem* level = m_tree.firstRoot();
  for (const String& label : path) {
    while (level && level->label() != label)
      level = level->nextSibling();
    if (!level)
      break;
    found = level;
    level = level->firstChild();
  }
  return found;
}

void TreeState::restore() const {
  for (const Path& path : m_expanded)
    if (TreeViewItem* item = find(path); item && pathOf(item) == path)
      m_tree.expandTree(item, FALSE);
  TreeViewItem* shown = find(m_shown);
  if (shown && shown != m_tree.shownItem())
    m_tree.showPageOf(static_cast<InvestmentTreeItem*>(shown));
  if (TreeViewItem* current = find(m_current))
    m_tree.selectQuietly(current);
}

} // namespace Tallymoor
