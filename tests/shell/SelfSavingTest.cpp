#include "shell/SelfSaving.h"
#include "ShellTest.h"
#include "books/SharePortfolioUser.h"
#include "foundation/FileOperations.h"
#include "shell/WarningStrip.h"
#include "support/FakeUserInteraction.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/GetStringDialog.h"
#include "widgets/HandlerScope.h"
#include <atomic>
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr FXuint NEVER = 3'600'000;

/// The window saves as soon as it is idle after a change.
class SelfSavingTest : public ShellTest {
protected:
  SelfSavingTest() {
    SelfSaving::setDelays(SavingDelays{.afterChange = 0, .whileBusy = 0, .afterFailure = NEVER});
    TestProfile::writeFile(
        recordsPath(),
        "<Portfolios><SharePortfolio><String>Trading</String><HeldShares/><SoldShares/><Dividends/>"
        "<CashReserve/><String/></SharePortfolio></Portfolios>");
  }

  void deposit(const std::string& word) {
    guardedHandler(u"test", [&] {
      SharePortfolioTreeItem& node = *tallymoor().totalCapital()->portfolioNode(u"Trading");
      node.change(u"Deposit", [&] {
        node.portfolio().creditCash(Date(2026, 3, 2), 1, CASH_EVENT_DEPOSIT,
                                    String(("DEPOSIT " + word).c_str()));
      });
    });
  }
  std::string records() { return TestProfile::readFile(recordsPath()); }
  bool isSaved(const std::string& word) { return records().find("DEPOSIT " + word) != std::string::npos; }
  std::vector<String> warnings() { return tallymoor().warnings()->shownTexts(); }
};

TEST_F(SelfSavingTest, AChangeIsSavedUnasked) {
  deposit("one");
  EXPECT_TRUE(runUntil([this] { return isSaved("one"); }));
  deposit("two");
  EXPECT_TRUE(runUntil([this] { return isSaved("two"); }));
  EXPECT_THAT(TestProfile::readFile(recordsPath() + u".bak"), Not(HasSubstr("DEPOSIT")));
  command(TallymoorWindow::ID_UNDO);
  EXPECT_TRUE(runUntil([this] { return !isSaved("two"); }));
}

TEST_F(SelfSavingTest, AnOpenDialogIsWaitedFor) {
  GetStringDialog dialog(&tallymoor(), u"A form", u"Text");
  whenModal("A form", [this](FXWindow&) { deposit("one"); });
  whenModal("A form", [this](FXWindow& form) {
    EXPECT_FALSE(tallymoor().store().finishSaving());
    EXPECT_FALSE(isSaved("one"));
    press(form, "Cancel");
  });
  dialog.execute();
  EXPECT_TRUE(runUntil([this] { return isSaved("one"); }));
}

TEST_F(SelfSavingTest, RecordsOfAnotherHandAreNotOverwrittenUnasked) {
  TestProfile::writeFile(recordsPath(), "<Portfolios><!-- of another --></Portfolios>");
  deposit("one");
  EXPECT_TRUE(runUntil([this] { return !warnings().empty(); }));
  EXPECT_THAT(warnings().at(0).toUTF8(), HasSubstr("Another program has changed your records on disk."));
  EXPECT_FALSE(isSaved("one"));
  whenModal("Records changed on disk", [this](FXWindow& dialog) {
    press(dialog, "Take theirs");
    press(dialog, "OK");
  });
  command(TallymoorWindow::ID_SAVE);
  EXPECT_TRUE(runUntil([this] { return warnings().empty(); }));
  EXPECT_EQ(nullptr, tallymoor().totalCapital()->portfolioNode(u"Trading"));
  command(TallymoorWindow::ID_UNDO);
  EXPECT_TRUE(runUntil([this] { return isSaved("one"); }));
  EXPECT_NE(nullptr, tallymoor().totalCapital()->portfolioNode(u"Trading"));
}

TEST_F(SelfSavingTest, LeavingAsksAboutRecordsOfAnotherHand) {
  deposit("one");
  ASSERT_TRUE(runUntil([this] { return isSaved("one"); }));
  const std::string other = "<Portfolios><!-- of another --></Portfolios>";
  TestProfile::writeFile(recordsPath(), other);
  whenModal("Records changed on disk", [this](FXWindow& dialog) {
    press(dialog, "Take theirs");
    press(dialog, "OK");
  });
  leave();
  EXPECT_EQ(other, records());
}

TEST_F(SelfSavingTest, WhatIsBeingWrittenIsThereWhenTheUserLeaves) {
  deposit("one");
  ASSERT_TRUE(tallymoor().store().beginSaving([] {}));
  deposit("two");
  leave();
  EXPECT_TRUE(isSaved("two"));
}

ssize_t writeToFullDisk(int, const void*, size_t) {
  errno = ENOSPC;
  return -1;
}

TEST_F(SelfSavingTest, AFailureIsShownUntilASaveSucceeds) {
  deposit("one");
  FileOperations::current().write = writeToFullDisk;
  EXPECT_TRUE(runUntil([this] { return !warnings().empty(); }));
  FileOperations::current() = FileOperations::system();
  ASSERT_EQ(1u, warnings().size());
  EXPECT_THAT(warnings()[0].toUTF8(), HasSubstr("Your records could not be saved: "));
  EXPECT_THAT(warnings()[0].toUTF8(), HasSubstr("No space left on device"));
  EXPECT_FALSE(isSaved("one"));

  deposit("two");
  EXPECT_TRUE(runUntil([this] { return warnings().empty(); }));
  EXPECT_TRUE(isSaved("two"));
}

std::atomic<bool> isFull;

/// Fails once.
ssize_t writeToDiskThatWasFull(int file, const void* bytes, size_t count) {
  return isFull.exchange(false) ? writeToFullDisk(file, bytes, count)
                                : FileOperations::system().write(file, bytes, count);
}

class RetriedSavingTest : public SelfSavingTest {
protected:
  RetriedSavingTest() {
    SelfSaving::setDelays(SavingDelays{.afterChange = 0, .whileBusy = 0, .afterFailure = 0});
  }
};

TEST_F(RetriedSavingTest, AFailureIsTriedAgain) {
  deposit("one");
  isFull = true;
  FileOperations::current().write = writeToDiskThatWasFull;
  EXPECT_TRUE(runUntil([this] { return isSaved("one") && warnings().empty(); }));
  EXPECT_FALSE(isFull);
  deleteWindow();
  FileOperations::current() = FileOperations::system();
}

/// A change of the last run that was not saved.
class RecoveredSavingTest : public SelfSavingTest {
protected:
  RecoveredSavingTest() {
    FakeUserInteraction user;
    PortfolioStore store(user);
    store.load();
    makeChange(u"Deposit", [&] {
      store.portfolios().at(u"Trading")->creditCash(Date(2026, 3, 2), 1, CASH_EVENT_DEPOSIT, u"DEPOSIT one");
    });
  }
  std::unique_ptr<MainWindow> makeWindow(FXApp* app) override {
    whenModal("Tallymoor ended without saving the last time.", [this](FXWindow& box) { press(box, "OK"); });
    return SelfSavingTest::makeWindow(app);
  }
};

TEST_F(RecoveredSavingTest, WhatWasRecoveredIsSavedAfterTheStart) {
  EXPECT_TRUE(runUntil([this] { return isSaved("one"); }));
}

} // namespace
} // namespace Tallymoor
