#pragma once
#include "widgets/TreeView.h"
#include <functional>
#include <utility>

namespace Tallymoor {

class InvestmentTreeItem;
class PageSwitcher;

/// A tree whose nodes own the pages of a switcher: selecting a node shows its page.
class InvestmentTree : public TreeView {
  FXDECLARE_ABSTRACT(InvestmentTree)
public:
  InvestmentTree(FXComposite* parent, FXColor backColour, FXColor textColour);
  /// Deletes the nodes, and with them their pages; the switcher, if it is still there, is left without them.
  ~InvestmentTree() override;

  /// Where pages go; not owned. Set before the first node is made; must outlive the nodes.
  void setSwitcher(PageSwitcher* switcher) { m_switcher = switcher; }
  PageSwitcher* switcher() const { return m_switcher; }
  /// Background of the tree and of page headings, and the text colour of headings.
  FXColor backColour() const { return m_backColour; }
  FXColor textColour() const { return m_textColour; }

  /// An empty page in the switcher, owned by the node that asked for it.
  FXVerticalFrame* createPage();

  /// Called before the nodes are updated, so that it can remove those that are obsolete. May be
  /// empty.
  void setBeforeUpdate(std::function<void()> filler) { m_beforeUpdate = std::move(filler); }
  void updateItems() override;
  /// update on each root node, then shows the first one.
  void showFirst();

  /// The node whose page is shown; null when none is.
  InvestmentTreeItem* shownItem() const { return m_shownItem; }
  /// Shows the node's page; one that can't be made leaves what is shown.
  void showPageOf(InvestmentTreeItem* item);
  /// Called by a node that has just lost its page: the page that was shown stays in sight, whatever its place
  /// is now.
  void pageGone(const InvestmentTreeItem* item);

private:
  PageSwitcher* m_switcher = nullptr;
  InvestmentTreeItem* m_shownItem = nullptr;
  std::function<void()> m_beforeUpdate;
  FXColor m_backColour;
  FXColor m_textColour;
};

} // namespace Tallymoor
