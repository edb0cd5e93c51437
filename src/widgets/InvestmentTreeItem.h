#pragma once
#include "widgets/TreeViewItem.h"

namespace Tallymoor {

class InvestmentTree;

/// A node that owns one page of its tree's switcher, with a heading above the node's own views.
class InvestmentTreeItem : public TreeViewItem {
  FXDECLARE_ABSTRACT(InvestmentTreeItem)
public:
  /// Makes the node and its page with the heading. A subclass puts its views into the page inside buildView,
  /// and calls create on them.
  InvestmentTreeItem(InvestmentTree* tree, TreeViewItem* parentItem, const String& label, FXIcon* openIcon,
                     FXIcon* closedIcon);
  /// Deletes the page.
  ~InvestmentTreeItem() override;

  /// Shows the node's page and brings it up to date; gives 1. An unsound node says so in a box and gives 0.
  FXint onLeftClick(FXint x, FXint y) override;
  void removeChild(TreeViewItem* child) override;

  /// Selects the node in the tree without notification, then shows it as a click does.
  void activate();

  /// The node's page; null when building it failed.
  FXVerticalFrame* page() const { return m_page; }
  InvestmentTree* investmentTree() const;

  /// isSound for the head of what the user starts: when it is false, an error box says so. Not for update,
  /// which must stay silent.
  bool checkSound() const;

protected:
  /// Runs what makes the views of the page. Whatever it throws leaves the node unsound and without a page,
  /// and is not reported.
  template <class Build>
  void buildView(Build&& build) {
    try {
      build();
    } catch (...) {
      buildFailed();
    }
  }

  /// What stands above the views, which is the label at first.
  void setHeading(const String& text);

private:
  void buildHeading();
  void buildFailed();

  FXVerticalFrame* m_page = nullptr;
  FXLabel* m_heading = nullptr; ///< of the page
};

} // namespace Tallymoor
