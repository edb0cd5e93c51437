#include "widgets/RememberedSplitter.h"
#include "foundation/Settings.h"
#include "support/windows/OnDisplay.h"
#include "support/windows/WindowTest.h"

namespace Tallymoor {
namespace {

class RememberedSplitterTest : public WindowTest {
protected:
  RememberedSplitter& makeSplitter(const String& key = u"Y Splitter Test") {
    auto* splitter = new RememberedSplitter(mainWindow().contentFrame(), key);
    for (int pane = 0; pane < 2; ++pane)
      new FXFrame(splitter, LAYOUT_FILL_X | LAYOUT_FILL_Y);
    splitter->create();
    settle();
    return *splitter;
  }
  void settle() {
    mainWindow().contentFrame()->recalc();
    letEventsPass();
    mainWindow().layout();
  }
  static int share(const FXSplitter& splitter) { return splitter.getSplit(0) * 100 / splitter.getHeight(); }
  /// Drags the bar.
  void moveBar(RememberedSplitter& splitter, FXint percent) {
    splitter.setSplit(0, splitter.getHeight() * percent / 100);
    settle();
    splitter.handle(&splitter, FXSEL(SEL_COMMAND, RememberedSplitter::ID_SPLITTER), nullptr);
    settle();
  }
};

TEST_F(RememberedSplitterTest, BeginsInTheMiddle) {
  EXPECT_NEAR(50, share(makeSplitter()), 1);
}

TEST_F(RememberedSplitterTest, MovedBarStaysAndIsKept) {
  RememberedSplitter& splitter = makeSplitter();
  moveBar(splitter, 30);
  EXPECT_NEAR(30, share(splitter), 1);
  EXPECT_NEAR(300, Settings::Instance().readInt(u"Gui Settings", u"Y Splitter Test"), 10);
  delete &splitter;
  EXPECT_NEAR(30, share(makeSplitter()), 1);
}

TEST_F(RememberedSplitterTest, PanesShareARoomThatChanges) {
  RememberedSplitter& splitter = makeSplitter();
  moveBar(splitter, 30);
  const FXint before = splitter.getHeight();
  mainWindow().resize(mainWindow().getWidth(), mainWindow().getHeight() + 200);
  settle();
  EXPECT_EQ(before + 200, splitter.getHeight());
  EXPECT_NEAR(30, share(splitter), 1);
}

TEST_F(RememberedSplitterTest, SplittersOfOneKeyAgree) {
  RememberedSplitter& first = makeSplitter();
  RememberedSplitter& second = makeSplitter();
  moveBar(first, 70);
  second.recalc();
  settle();
  EXPECT_NEAR(70, share(second), 2);
}

TEST_F(RememberedSplitterTest, PaneIsNeverLost) {
  Settings::Instance().writeInt(u"Gui Settings", u"Y Splitter Test", 5000);
  EXPECT_NEAR(90, share(makeSplitter()), 1);
  Settings::Instance().writeInt(u"Gui Settings", u"Y Splitter Low", -5);
  EXPECT_NEAR(10, share(makeSplitter(u"Y Splitter Low")), 2);
}

/// Like the first page after a start: it is created with a height of 0 and laid out later.
TEST_F(RememberedSplitterTest, APaneCreatedWithoutHeightIsShown) {
  auto* page =
      new FXVerticalFrame(mainWindow().contentFrame(), LAYOUT_FILL_X | LAYOUT_FIX_HEIGHT, 0, 0, 0, 0);
  auto* splitter = new RememberedSplitter(page, u"Y Splitter Test");
  auto* upper = new FXFrame(splitter, LAYOUT_FILL_X | LAYOUT_FILL_Y);
  auto* lower = new FXFrame(splitter, LAYOUT_FILL_X | LAYOUT_FILL_Y);
  splitter->setSplit(0, 0);
  page->create();
  page->setHeight(400);
  settle();
  ASSERT_GT(splitter->getHeight(), 100);
  EXPECT_TRUE(isOnDisplay(*upper));
  EXPECT_TRUE(isOnDisplay(*lower));
  EXPECT_NEAR(50, share(*splitter), 1);
}

} // namespace
} // namespace Tallymoor
