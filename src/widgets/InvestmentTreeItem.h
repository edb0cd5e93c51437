#pragma once
#include "widgets/TreeViewItem.h"
#include <utility>

namespace Tallymoor {

class InvestmentTree;

/// A node that owns one page of its tree's switcher, with a heading above the node's own views. There may be
/// hundreds of nodes, so the page is made when it is first wanted: a page that is never shown costs nothing.
class InvestmentTreeItem : public TreeViewItem {
  FXDECLARE_ABSTRACT(InvestmentTreeItem)
public:
  /// Makes the node. The subclass puts its views into the page by makeViews.
  InvestmentTreeItem(InvestmentTree* tree, TreeViewItem* parentItem, const String& label, FXIcon* openIcon,
                     FXIcon* closedIcon);
  /// Deletes the page.
  ~InvestmentTreeItem() override;

  /// Shows the node's page and brings it up to date; gives 1. An unsound node, or one whose page can't be
  /// made, says so in a box and gives 0.
  FXint onLeftClick(FXint x, FXint y) override;
  void removeChild(TreeViewItem* child) override;

  /// Selects the node in the tree without notification, then shows it as a click does.
  void activate();

  /// The node's page, made now if it was not wanted before, with its figures up to date; null when making it
  /// failed.
  FXVerticalFrame* page();
  /// The page as it is; null when it has not been made.
  FXVerticalFrame* madePage() const { return m_page; }
  InvestmentTree* investmentTree() const;

  /// isSound for the head of what the user starts: when it is false, an error box says so. Not for update,
  /// which must stay silent.
  bool checkSound() const;

protected:
  /// Puts the views into the new page, and fills them. Whatever it throws leaves the node unsound.
  virtual void makeViews() {}
  /// The page and its views have gone, since makeViews failed.
  virtual void viewsGone() {}
  /// Somebody asks for a page that was made before: what is yet to be shown in it is.
  virtual void freshenViews() {}
  /// True once, for the update that follows when the user opens a page that had to be made: its views have
  /// just been filled.
  bool takePageIsNew() { return std::exchange(m_pageIsNew, false); }

  /// Runs what makes the node or its views. Whatever it throws leaves the node unsound and without a page,
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
  void makePage();
  void buildHeading();
  void buildFailed();

  FXVerticalFrame* m_page = nullptr;
  bool m_makingPage = false;
  bool m_pageIsNew = false;
  bool m_failed = false;        ///< to be built, so that there will be no page
  FXLabel* m_heading = nullptr; ///< of the page
};

} // namespace Tallymoor
