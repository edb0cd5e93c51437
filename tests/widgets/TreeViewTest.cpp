#include "widgets/TreeView.h"
#include "foundation/Exception.h"
#include "support/windows/WindowTest.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/InvestmentTreeItem.h"
#include "widgets/PageSwitcher.h"
#include "widgets/ToolkitText.h"
#include "widgets/TreeViewItem.h"
#include <fxkeys.h>
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;

const std::string UNSOUND = "This portfolio has suffered an error. Please restart Tallymoor.";

std::vector<std::string> noted;

/// A node that records its events.
class NotingItem : public InvestmentTreeItem {
public:
  NotingItem(InvestmentTree* tree, TreeViewItem* parent, const String& label, bool fails = false)
      : InvestmentTreeItem(tree, parent, label, nullptr, nullptr) {
    buildView([&] {
      m_view = new FXLabel(page(), "view");
      if (fails)
        throw 17; // Any exception type.
    });
  }

  void update() override { noted.push_back("update " + label().toUTF8()); }
  FXint onRightClick(FXint x, FXint y) override {
    noted.push_back("right " + label().toUTF8());
    m_x = x;
    m_y = y;
    if (onClick)
      onClick();
    return 1;
  }

  std::function<void()> onClick;
  FXint m_x = -1, m_y = -1;
  FXLabel* m_view = nullptr;
};

class FailingItem : public NotingItem {
public:
  using NotingItem::NotingItem;
  FXint onLeftClick(FXint, FXint) override { throw Exception(u"bad"); }
};

class TreeViewTest : public WindowTest {
protected:
  void SetUp() override {
    noted.clear();
    WindowTest::SetUp();
    m_splitter = new FXSplitter(mainWindow().contentFrame(), LAYOUT_FILL_X | LAYOUT_FILL_Y);
    auto* left = new FXVerticalFrame(m_splitter, LAYOUT_FILL_X | LAYOUT_FILL_Y);
    m_tree = new InvestmentTree(left, FXRGB(200, 220, 255), FXRGB(0, 0, 128));
    m_switcher = new PageSwitcher(m_splitter, LAYOUT_FILL_X | LAYOUT_FILL_Y);
    m_tree->setSwitcher(m_switcher);
    m_splitter->setSplit(0, 200);
    m_splitter->create();
    root = new NotingItem(m_tree, nullptr, u"Total Investment Capital");
    first = new NotingItem(m_tree, root, u"Trading");
    held = new NotingItem(m_tree, first, u"Shares Held");
    second = new NotingItem(m_tree, root, u"A & B");
    mainWindow().contentFrame()->recalc();
    letEventsPass();
  }

  InvestmentTree& tree() { return *m_tree; }
  FXWindow* shownPage() { return m_switcher->childAtIndex(m_switcher->getCurrent()); }

  /// A position where the toolkit's hit test gives this result for the node: 1 icon, 2 text, 3 box.
  FXPoint place(const FXTreeItem* item, FXint hit) {
    for (FXint y = 0; y < tree().getHeight(); ++y)
      for (FXint x = 0; x < tree().getWidth(); ++x)
        if (tree().getItemAt(x, y) == item && tree().hitItem(item, x, y) == hit)
          return FXPoint(static_cast<FXshort>(x), static_cast<FXshort>(y + 3));
    throw std::runtime_error("the node has no such place in sight");
  }
  void mouse(FXuint type, FXPoint at, FXint button) {
    FXEvent event{};
    event.type = type;
    event.win_x = event.last_x = event.click_x = at.x;
    event.win_y = event.last_y = event.click_y = at.y;
    event.root_x = at.x + 1000;
    event.root_y = at.y + 2000;
    event.click_count = 1;
    event.code = button;
    tree().handle(&app(), FXSEL(type, 0), &event);
  }
  void click(FXPoint at) {
    mouse(SEL_LEFTBUTTONPRESS, at, LEFTBUTTON);
    mouse(SEL_LEFTBUTTONRELEASE, at, LEFTBUTTON);
    letEventsPass();
  }
  void keyPress(FXuint code, FXuint state = 0) {
    FXEvent event{};
    event.type = SEL_KEYPRESS;
    event.code = code;
    event.state = state;
    tree().handle(&app(), FXSEL(SEL_KEYPRESS, 0), &event);
    letEventsPass();
  }
  void clickText(const FXTreeItem* item) { click(place(item, 2)); }
  void rightClick(FXPoint at) {
    mouse(SEL_RIGHTBUTTONPRESS, at, RIGHTBUTTON);
    mouse(SEL_RIGHTBUTTONRELEASE, at, RIGHTBUTTON);
  }

  NotingItem* root = nullptr;
  NotingItem* first = nullptr;
  NotingItem* held = nullptr;
  NotingItem* second = nullptr;
  FXSplitter* m_splitter = nullptr;
  InvestmentTree* m_tree = nullptr;
  PageSwitcher* m_switcher = nullptr;
};

TEST_F(TreeViewTest, HasTheRightStyleAndTarget) {
  EXPECT_EQ(0x1A00000u, tree().getListStyle());
  EXPECT_EQ(0xC00u, tree().getLayoutHints());
  EXPECT_EQ(&tree(), tree().getTarget());
  EXPECT_EQ(55u, tree().getSelector());
  EXPECT_EQ(FXRGB(200, 220, 255), tree().getBackColor());
}

TEST_F(TreeViewTest, MakingANodePutsItBehindItsSiblings) {
  EXPECT_EQ(root, tree().firstRoot());
  EXPECT_EQ(first, root->firstChild());
  EXPECT_EQ(second, first->nextSibling());
  EXPECT_EQ(root, second->parentItem());
  EXPECT_EQ(nullptr, root->parentItem());
  EXPECT_EQ(&tree(), held->tree());
  EXPECT_STREQ("A & B", second->getText().text());
}

TEST_F(TreeViewTest, ClickOnTheTextExpandsAndShows) {
  clickText(root);
  EXPECT_TRUE(root->isExpanded());
  EXPECT_EQ(root->page(), shownPage());
  EXPECT_EQ(root, tree().shownItem());
  EXPECT_THAT(noted, ElementsAre("update Total Investment Capital"));
  clickText(first);
  EXPECT_TRUE(first->isExpanded());
  EXPECT_EQ(first->page(), shownPage());
  EXPECT_TRUE(first->page()->shown());
  EXPECT_FALSE(root->page()->shown());
  EXPECT_TRUE(first->isSelected());
}

TEST_F(TreeViewTest, ClickOnTheTextOfAnExpandedNodeLeavesItExpanded) {
  clickText(root);
  clickText(root);
  EXPECT_TRUE(root->isExpanded());
  EXPECT_EQ(2u, noted.size());
}

TEST_F(TreeViewTest, ClickOnTheBoxExpandsAndShowsNothing) {
  clickText(root);
  noted.clear();
  click(place(first, 3));
  EXPECT_TRUE(first->isExpanded());
  EXPECT_EQ(root->page(), shownPage());
  EXPECT_TRUE(noted.empty());
  click(place(first, 3));
  EXPECT_FALSE(first->isExpanded());
}

TEST_F(TreeViewTest, ClickBelowTheNodesDoesNothing) {
  click(FXPoint(10, static_cast<FXshort>(tree().getHeight() - 10)));
  rightClick(FXPoint(10, static_cast<FXshort>(tree().getHeight() - 10)));
  EXPECT_TRUE(noted.empty());
}

TEST_F(TreeViewTest, PressOnOneNodeAndReleaseOnAnotherSelectsWhatIsShown) {
  clickText(root);
  const FXPoint firstPlace = place(first, 2), secondPlace = place(second, 2);
  mouse(SEL_LEFTBUTTONPRESS, firstPlace, LEFTBUTTON);
  mouse(SEL_LEFTBUTTONRELEASE, secondPlace, LEFTBUTTON);
  EXPECT_EQ(second->page(), shownPage());
  EXPECT_TRUE(second->isSelected());
  EXPECT_FALSE(first->isSelected());
}

TEST_F(TreeViewTest, RightClickTellsTheNodeWhereAPopupBelongs) {
  const FXPoint at = place(root, 2);
  rightClick(at);
  EXPECT_THAT(noted, ElementsAre("right Total Investment Capital"));
  EXPECT_EQ(at.x + 1000, root->m_x);
  EXPECT_EQ(at.y + 2000, root->m_y);
}

TEST_F(TreeViewTest, WalkingByKeysShowsEachNode) {
  tree().showFirst();
  tree().selectQuietly(root);
  tree().expandTree(root, FALSE);
  keyPress(KEY_Down);
  EXPECT_EQ(first, tree().getCurrentItem());
  EXPECT_EQ(first->page(), shownPage());
  keyPress(KEY_Right); // Expands the node.
  EXPECT_TRUE(first->isExpanded());
  EXPECT_EQ(first->page(), shownPage());
  keyPress(KEY_Down);
  EXPECT_EQ(held->page(), shownPage());
  keyPress(KEY_Home);
  EXPECT_EQ(root->page(), shownPage());
}

TEST_F(TreeViewTest, AKeyThatKeepsTheNodeRefreshesNothing) {
  tree().selectQuietly(root);
  noted.clear();
  keyPress(KEY_Up);
  EXPECT_TRUE(noted.empty());
}

TEST_F(TreeViewTest, MenuKeyTellsTheCurrentNodeWhereAPopupBelongs) {
  const auto expectPopupBelow = [this](FXuint key, FXuint state) {
    first->m_x = first->m_y = -1;
    keyPress(key, state);
    FXint x = 0, y = 0;
    tree().translateCoordinatesFrom(x, y, tree().getRoot(), first->m_x, first->m_y);
    EXPECT_EQ(first, tree().getItemAt(x, y - 1));
    EXPECT_EQ(second, tree().getItemAt(x, y));
  };
  tree().selectQuietly(first);
  expectPopupBelow(KEY_Menu, 0);
  expectPopupBelow(KEY_F10, SHIFTMASK);
}

TEST_F(TreeViewTest, UpdatingWalksEveryBranchDepthFirst) {
  tree().updateItems();
  EXPECT_THAT(noted, ElementsAre("update Total Investment Capital", "update Trading", "update Shares Held",
                                 "update A & B"));
}

TEST_F(TreeViewTest, ShowFirstBringsTheRootsUpToDateAndShowsTheFirst) {
  auto* other = new NotingItem(m_tree, nullptr, u"Other root");
  tree().showFirst();
  EXPECT_THAT(noted, ElementsAre("update Total Investment Capital", "update Other root",
                                 "update Total Investment Capital"));
  EXPECT_EQ(root->page(), shownPage());
  EXPECT_NE(other->page(), shownPage());
}

TEST_F(TreeViewTest, ActivateSelectsAndShows) {
  held->activate();
  EXPECT_TRUE(held->isSelected());
  EXPECT_EQ(held, tree().getCurrentItem());
  EXPECT_FALSE(root->isSelected());
  EXPECT_EQ(held->page(), shownPage());
  EXPECT_THAT(noted, ElementsAre("update Shares Held"));
}

TEST_F(TreeViewTest, PageBeginsWithAHeadingInTheTreesColours) {
  auto* frame = dynamic_cast<FXVerticalFrame*>(second->page()->getFirst());
  ASSERT_TRUE(frame);
  auto* heading = dynamic_cast<FXLabel*>(frame->getFirst());
  ASSERT_TRUE(heading);
  EXPECT_EQ("A & B", fromFox(heading->getText()).toUTF8());
  EXPECT_EQ(FXRGB(0, 0, 128), heading->getTextColor());
  EXPECT_EQ(FXRGB(200, 220, 255), heading->getBackColor());
  EXPECT_EQ(mainWindow().boldFont(), heading->getFont());
  EXPECT_EQ(2 * mainWindow().boldFont()->getTextHeight("A & B"), frame->getHeight());
  EXPECT_EQ(0x100028u, 0x100028u & (heading->getIconPosition() | heading->getLayoutHints()));
  EXPECT_EQ(4, second->page()->getVSpacing());
  EXPECT_EQ(0, second->page()->getPadTop());
}

TEST_F(TreeViewTest, NodesWithoutAnAnswerThrowTheirClassesWords) {
  const auto messageOf = [](TreeViewItem& item) {
    try {
      item.removeChild(nullptr);
    } catch (const Exception& exception) {
      return exception.message().toUTF8();
    }
    return std::string("nothing was thrown");
  };
  EXPECT_EQ("InvestmentTreeItem::removeChild", messageOf(*root));
  TreeViewItem* plain = new TreeViewItem(m_tree, nullptr, u"plain", nullptr, nullptr);
  EXPECT_EQ("TreeViewItem::removeChild", messageOf(*plain));
  EXPECT_EQ(0, plain->onLeftClick(1, 1));
  EXPECT_EQ(0, plain->onRightClick(1, 1));
  plain->update();
  EXPECT_TRUE(plain->isSound());
}

TEST_F(TreeViewTest, FailuresOfNodesAreReportedWithTheHandlersWords) {
  auto* failing = new FailingItem(m_tree, nullptr, u"Failing");
  failing->onClick = [] { throw Exception(u"no popup"); };
  letEventsPass();
  answer("TreeView::onLeftMouseUp failed. Exception : bad", "OK");
  clickText(failing);
  answer("TreeView::onRightMouseUp failed. Exception : no popup", "OK");
  rightClick(place(failing, 2));
  tree().selectQuietly(root);
  answer("TreeView::onKeyPress failed. Exception : bad", "OK");
  keyPress(KEY_End);
  EXPECT_EQ(3u, boxes().size());
}

TEST_F(TreeViewTest, ANodeThatFailedToBuildBreaksItsAncestors) {
  clickText(second->parentItem()); // The root, if nothing fails.
  auto* broken = new NotingItem(m_tree, first, u"Broken", true);
  EXPECT_EQ(nullptr, broken->page());
  EXPECT_FALSE(broken->isSound());
  EXPECT_FALSE(first->isSound());
  EXPECT_FALSE(root->isSound());
  EXPECT_FALSE(tree().isSound());
  EXPECT_TRUE(second->isSound());
  EXPECT_TRUE(held->isSound());
  EXPECT_EQ(root->page(), shownPage()) << "the page that was shown is still in sight";
}

TEST_F(TreeViewTest, AClickAboveABrokenNodeShowsTheErrorAndOtherBranchesWork) {
  clickText(root);
  clickText(second);
  new NotingItem(m_tree, first, u"Broken", true);
  letEventsPass();
  noted.clear();
  for (NotingItem* above : {first, root}) {
    answer(UNSOUND, "OK");
    clickText(above);
    EXPECT_EQ(second->page(), shownPage());
  }
  EXPECT_TRUE(noted.empty());
  EXPECT_EQ(2u, boxes().size());
  clickText(held);
  EXPECT_EQ(held->page(), shownPage());
  EXPECT_THAT(noted, ElementsAre("update Shares Held"));
  EXPECT_EQ(2u, boxes().size());
}

TEST_F(TreeViewTest, DeletingANodeKeepsThePageThatIsShown) {
  second->activate();
  tree().removeItem(first, FALSE);
  EXPECT_EQ(second->page(), shownPage());
  EXPECT_EQ(second, tree().shownItem());
  letEventsPass();
  EXPECT_TRUE(second->page()->shown());
  tree().removeItem(second, FALSE);
  EXPECT_EQ(nullptr, tree().shownItem());
  EXPECT_EQ(1, m_switcher->numChildren());
}

TEST_F(TreeViewTest, ANodeDeletedInItsOwnClickIsDeletedAfterTheClick) {
  clickText(root);
  first->onClick = [this] {
    HandlerScope::whenDone(this, [this] { tree().removeItem(first, FALSE); });
    EXPECT_EQ("Trading", first->label().toUTF8());
  };
  rightClick(place(first, 2));
  EXPECT_EQ(second, root->firstChild());
  EXPECT_EQ(2, m_switcher->numChildren());
}

TEST_F(TreeViewTest, NodesAndPagesGoWithTheTree) {
  tree().clearItems(FALSE);
  EXPECT_EQ(0, m_switcher->numChildren());
  EXPECT_EQ(nullptr, tree().firstRoot());
  EXPECT_TRUE(tree().isSound());
  tree().showFirst();
  delete m_splitter;
}

TEST_F(TreeViewTest, OnlyTheShownPageHasWindowsOnTheDisplay) {
  first->activate();
  letEventsPass();
  EXPECT_NE(0u, first->m_view->id());
  for (const NotingItem* hidden : {root, held, second}) {
    EXPECT_EQ(0u, hidden->madePage()->id()) << hidden->label().toUTF8();
    EXPECT_EQ(0u, hidden->m_view->id()) << hidden->label().toUTF8();
  }
  second->activate();
  letEventsPass();
  EXPECT_EQ(0u, first->m_view->id());
  EXPECT_NE(0u, second->m_view->id());
  EXPECT_TRUE(second->m_view->shown());
  first->activate();
  letEventsPass();
  EXPECT_NE(0u, first->m_view->id());
}

TEST_F(TreeViewTest, TheFocusOfAPageThatLeavesGoesToTheTree) {
  first->activate();
  letEventsPass();
  auto* field = new FXTextField(first->page(), 10);
  field->create();
  field->setFocus();
  letEventsPass();
  ASSERT_TRUE(field->hasFocus());
  second->activate();
  EXPECT_FALSE(field->hasFocus());
  EXPECT_TRUE(tree().hasFocus());
}

} // namespace
} // namespace Tallymoor
