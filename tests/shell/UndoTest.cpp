#include "ShellTest.h"
#include "books/SharePortfolioUser.h"
#include "foundation/FileOperations.h"
#include "foundation/RunTimeSettings.h"
#include "support/windows/RealKeys.h"
#include "views/ChangeTable.h"
#include "views/HistoryTable.h"
#include "views/PriceLimits.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesHeldTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/HandlerScope.h"
#include <sstream>

namespace Tallymoor {
namespace {

/// Changes in the real window, undone and made again by its menu.
class UndoTest : public ShellTest {
protected:
  UndoTest() {
    market().setHistory(u"AAA.AX", Date(2026, 1, 20), Date(2026, 3, 3), 5.0);
    TestProfile::writeFile(
        recordsPath(),
        "<Portfolios><SharePortfolio><String>Trading</String><HeldShares/><SoldShares/><Dividends/>"
        "<CashReserve><CashEvent><Date>2/3/2026</Date><Constant>1000.00</Constant><Constant>4</Constant>"
        "<String>DEPOSIT </String></CashEvent></CashReserve><String/></SharePortfolio></Portfolios>");
  }
  ~UndoTest() override { FileOperations::current() = FileOperations::system(); }

  SharePortfolioTreeItem& node(const String& name) {
    SharePortfolioTreeItem* const found = tallymoor().totalCapital()->portfolioNode(name);
    if (!found)
      throw std::runtime_error("no such portfolio");
    return *found;
  }
  std::string textOfAll() {
    std::ostringstream stream;
    tallymoor().store().records().encode(stream);
    return stream.str();
  }
  void buy(double number) {
    guardedHandler(u"test", [&] {
      node(u"Trading").change(u"Purchase of " + String::fromDouble(number, 0) + u" AAA.AX", [&] {
        node(u"Trading").portfolio().buyShares(u"AAA.AX", {Date(2026, 3, 2), number, 5.0, 10.0, String()});
      });
    });
  }
  void whenName(const std::string& form, const std::string& name) {
    whenModal(form, [this, name](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), name);
      press(dialog, "OK");
    });
  }
  FXMenuCommand& entryOf(FXuint id) {
    for (FXMenuTitle* title : findAll<FXMenuTitle>(tallymoor()))
      for (FXMenuCommand* entry : findAll<FXMenuCommand>(*title->getMenu()))
        if (entry->getSelector() == id)
          return *entry;
    throw std::runtime_error("no such entry");
  }
  std::string editEntry(FXuint id) {
    FXMenuCommand& entry = entryOf(id);
    entry.handle(&app(), FXSEL(SEL_UPDATE, 0), nullptr);
    return std::string(entry.getText().text()) + (entry.isEnabled() ? "" : " (grey)");
  }
  /// The toolkit updates entries when it is idle.
  void awaitUsable(FXuint id) {
    ASSERT_TRUE(runUntil([&] { return entryOf(id).isEnabled(); }));
  }
  std::string undoEntry() { return editEntry(TallymoorWindow::ID_UNDO); }
  std::string redoEntry() { return editEntry(TallymoorWindow::ID_REDO); }
};

TEST_F(UndoTest, TheMenuNamesTheChangeAndItsViewsFollow) {
  EXPECT_EQ("Undo (grey)", undoEntry());
  EXPECT_EQ("Redo (grey)", redoEntry());
  const std::string before = textOfAll();
  node(u"Trading").activate();
  EXPECT_EQ(1000.0, node(u"Trading").portfolio().cashReserveToday());
  buy(20);
  const std::string after = textOfAll();
  EXPECT_EQ("Undo Purchase of 20 AAA.AX", undoEntry());
  EXPECT_EQ(890.0, node(u"Trading").portfolio().cashReserveToday());
  ASSERT_NE(nullptr, node(u"Trading").sharesHeldItem()->purchasesOf(u"AAA.AX"));

  command(TallymoorWindow::ID_UNDO);
  EXPECT_EQ(before, textOfAll());
  EXPECT_EQ(1000.0, node(u"Trading").portfolio().cashReserveToday());
  EXPECT_EQ(0.0, node(u"Trading").portfolio().sharesValueToday());
  EXPECT_EQ(nullptr, node(u"Trading").sharesHeldItem()->purchasesOf(u"AAA.AX"));
  EXPECT_EQ("Undo (grey)", undoEntry());
  EXPECT_EQ("Redo Purchase of 20 AAA.AX", redoEntry());

  command(TallymoorWindow::ID_REDO);
  EXPECT_EQ(after, textOfAll());
  EXPECT_EQ(890.0, node(u"Trading").portfolio().cashReserveToday());
  EXPECT_EQ(100.0, node(u"Trading").portfolio().sharesValueToday());
  EXPECT_NE(nullptr, node(u"Trading").sharesHeldItem()->purchasesOf(u"AAA.AX"));
}

TEST_F(UndoTest, ADeletedPortfolioComesBackWithItsNodeAndFigures) {
  buy(20);
  const std::string before = textOfAll();
  answer("Are you sure you want to delete share portfolio Trading?", "Yes");
  guardedHandler(u"test", [&] { node(u"Trading").remove(); });
  EXPECT_EQ(nullptr, tallymoor().totalCapital()->portfolioNode(u"Trading"));
  EXPECT_EQ("Undo Deletion of portfolio Trading", undoEntry());
  command(TallymoorWindow::ID_UNDO);
  EXPECT_EQ(before, textOfAll());
  EXPECT_EQ(890.0, node(u"Trading").portfolio().cashReserveToday());
  command(TallymoorWindow::ID_REDO);
  EXPECT_EQ(nullptr, tallymoor().totalCapital()->portfolioNode(u"Trading"));
}

TEST_F(UndoTest, ARenamedPortfolioGetsItsNameBack) {
  trayFormat = u"Trading";
  guardedHandler(u"test", [&] { tallymoor().totalCapital()->renamePortfolio(u"Trading", u"Other"); });
  EXPECT_EQ(u"Other", String(trayFormat));
  EXPECT_EQ("Undo Renaming of Trading to Other", undoEntry());
  command(TallymoorWindow::ID_UNDO);
  EXPECT_EQ("Trading", std::string(node(u"Trading").getText().text()));
  EXPECT_EQ(u"Trading", String(trayFormat));
  EXPECT_EQ(1000.0, node(u"Trading").portfolio().cashReserveToday());
}

TEST_F(UndoTest, UndoneLimitsAreNotBroughtBackByTheSettings) {
  buy(20);
  const auto limitsOfShare = [&] {
    return PriceLimits::ofHeldShare(*node(u"Trading").portfolio().findHeldShare(u"AAA.AX"));
  };
  guardedHandler(u"test", [&] { tallymoor().totalCapital()->limitsTyped(u"AAA.AX", {1.0, 9.0}); });
  EXPECT_EQ((PriceLimits{1.0, 9.0}), limitsOfShare());
  command(TallymoorWindow::ID_UNDO);
  EXPECT_TRUE(limitsOfShare().areNone());
  EXPECT_TRUE(PriceLimits::ofStock(u"AAA.AX").areNone());
  buy(5); // after which limits are brought together
  EXPECT_TRUE(limitsOfShare().areNone());
}

ssize_t writeToFullDisk(int, const void*, size_t) {
  errno = ENOSPC;
  return -1;
}

TEST_F(UndoTest, OnAFullDiskAChangeIsRefusedAndTheViewsShowWhatIsThere) {
  node(u"Trading").activate();
  buy(20);
  const std::string before = textOfAll();
  FileOperations::current().write = writeToFullDisk;
  whenModal("Tallymoor", [this](FXWindow& box) {
    EXPECT_TRUE(shows(box, "The change was not made, because it can't be kept safe:"));
    press(box, "OK");
  });
  buy(30);
  FileOperations::current() = FileOperations::system();
  EXPECT_EQ(before, textOfAll());
  EXPECT_EQ(890.0, node(u"Trading").portfolio().cashReserveToday());
  EXPECT_EQ("Undo Purchase of 20 AAA.AX", undoEntry());
  command(TallymoorWindow::ID_UNDO);
  EXPECT_EQ(1000.0, node(u"Trading").portfolio().cashReserveToday());
}

TEST_F(UndoTest, TheHistoryGoesBackAndAllViewsFollow) {
  node(u"Trading").activate();
  buy(20);
  const std::string then = textOfAll();
  guardedHandler(u"test", [&] { tallymoor().totalCapital()->limitsTyped(u"AAA.AX", {1.0, 9.0}); });
  guardedHandler(u"test", [&] { tallymoor().totalCapital()->renamePortfolio(u"Trading", u"Other"); });
  whenName("New Portfolio", "Saving");
  command(TallymoorWindow::ID_NEW_PORTFOLIO);
  const std::string before = textOfAll();
  whenModal("History", [this](FXWindow& dialog) {
    EXPECT_EQ(1, find<ChangeTable>(dialog)->getNumRows()) << "what the newest change did is there at once";
    auto& table = *find<HistoryTable>(dialog);
    table.setCurrentItem(3, 0, TRUE);
    letEventsPass();
    answer("Do you want to take back 3 changes of all portfolios?\nYou can undo that as one change.", "Yes");
    press(dialog, "Go Back to Here...");
  });
  command(TallymoorWindow::ID_HISTORY);
  letEventsPass();
  EXPECT_EQ(then, textOfAll());
  EXPECT_EQ(890.0, node(u"Trading").portfolio().cashReserveToday());
  EXPECT_NE(nullptr, node(u"Trading").sharesHeldItem()->purchasesOf(u"AAA.AX"));
  EXPECT_EQ(nullptr, tallymoor().totalCapital()->portfolioNode(u"Saving"));
  EXPECT_EQ("Undo Return to the state after Purchase of 20 AAA.AX", undoEntry());
  command(TallymoorWindow::ID_UNDO);
  EXPECT_EQ(before, textOfAll());
  EXPECT_EQ(890.0, node(u"Other").portfolio().cashReserveToday());
  EXPECT_NE(nullptr, tallymoor().totalCapital()->portfolioNode(u"Saving"));
}

TEST_F(UndoTest, GoingBackToWhereWeAreSaysSo) {
  buy(20);
  const std::string then = textOfAll();
  buy(30);
  command(TallymoorWindow::ID_UNDO);
  const std::string told = "Nothing was taken back: your portfolios are as they were after that change.";
  whenModal("History", [this, told](FXWindow& dialog) {
    find<HistoryTable>(dialog)->setCurrentItem(2, 0, TRUE);
    letEventsPass();
    answer("Do you want to take back 2 changes of all portfolios?\nYou can undo that as one change.", "Yes");
    whenModal(told, [this](FXWindow& box) {
      EXPECT_NE(nullptr, tallymoor().totalCapital()->portfolioNode(u"Trading"))
          << "the nodes are there again";
      press(box, "OK");
    });
    press(dialog, "Go Back to Here...");
  });
  command(TallymoorWindow::ID_HISTORY);
  letEventsPass();
  EXPECT_EQ(then, textOfAll());
  EXPECT_EQ("Redo Purchase of 30 AAA.AX", redoEntry());
}

TEST_F(UndoTest, TheKeysUndoAndRedo) {
  buy(20);
  const std::string after = textOfAll();
  RealKeys keys(app());
  tallymoor().setFocus();
  ASSERT_TRUE(runUntil([this] { return tallymoor().hasFocus(); }));
  awaitUsable(TallymoorWindow::ID_UNDO);
  keys.press(tallymoor(), KEY_z, CONTROLMASK);
  EXPECT_EQ("Redo Purchase of 20 AAA.AX", redoEntry());
  awaitUsable(TallymoorWindow::ID_REDO);
  keys.press(tallymoor(), KEY_Z, CONTROLMASK | SHIFTMASK);
  EXPECT_EQ(after, textOfAll());
  EXPECT_EQ("Redo (grey)", redoEntry());
}

} // namespace
} // namespace Tallymoor
