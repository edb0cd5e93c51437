#include "widgets/ProgressDialog.h"
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "support/windows/WindowTest.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

class ProgressDialogTest : public WindowTest, public HasLengthyFunctions {
protected:
  void runLengthyFunction(Progress& progress, int argument) override {
    m_progress = &progress;
    m_arguments.push_back(argument);
    m_shownAtStart = m_dialog && m_dialog->shown();
    if (m_work)
      m_work(progress);
  }
  std::function<void(Progress&)> m_work;
  Progress* m_progress = nullptr;
  ProgressDialog* m_dialog = nullptr;
  std::vector<int> m_arguments;
  bool m_shownAtStart = false;
};

TEST_F(ProgressDialogTest, RunsTheWorkShownAndStaysShown) {
  ProgressDialog dialog(&mainWindow(), u"Tallymoor startup", u"Please wait & see.", 5);
  m_dialog = &dialog;
  EXPECT_FALSE(dialog.shown());
  EXPECT_TRUE(dialog.run(*this, 42));
  EXPECT_EQ(std::vector<int>{42}, m_arguments);
  EXPECT_EQ(&dialog, m_progress);
  EXPECT_TRUE(m_shownAtStart);
  EXPECT_TRUE(dialog.shown());
  EXPECT_EQ("Tallymoor startup", title(dialog));
  EXPECT_TRUE(shows(dialog, "Please wait & see."));
  EXPECT_EQ(5u, dialog.total());
}

TEST_F(ProgressDialogTest, StepsMoveTheBarAndFillTheLog) {
  ProgressDialog dialog(&mainWindow(), u"Caption", u"Heading", 5);
  m_work = [&](Progress& progress) {
    progress.step(1, u"loading price cache");
    EXPECT_EQ(1u, find<FXProgressBar>(dialog)->getProgress());
    progress.step(2, String());
    EXPECT_EQ(3u, find<FXProgressBar>(dialog)->getProgress());
    progress.setText(u"loading portfolio records");
    EXPECT_EQ(3u, find<FXProgressBar>(dialog)->getProgress());
    progress.setTotal(9);
    EXPECT_EQ(9u, dialog.total());
  };
  EXPECT_TRUE(dialog.run(*this, 0));
  EXPECT_EQ(String(u"loading price cache\nloading portfolio records\n"), dialog.log());
}

TEST_F(ProgressDialogTest, TheLogShowsItsEnd) {
  ProgressDialog dialog(&mainWindow(), u"Caption", u"Heading", 100);
  m_work = [](Progress& progress) {
    for (int i = 0; i < 100; ++i)
      progress.step(1, u"line " + String::fromLong(i));
  };
  dialog.run(*this, 0);
  auto* log = find<FXText>(dialog);
  EXPECT_LT(log->getYPosition(), 0);
  EXPECT_FALSE(log->isEditable());
}

TEST_F(ProgressDialogTest, EventsPassAtEachStep) {
  ProgressDialog dialog(&mainWindow(), u"Caption", u"Heading", 5);
  int told = 0;
  m_work = [&](Progress& progress) {
    MainWindow::Instance().getApp()->addTimeout(&mainWindow(), MainWindow::ID_SHUTDOWN, 0);
    progress.step(1, u"one");
    told = progress.isCancelled() ? 1 : 0;
  };
  // A shutdown request arrives. It cancels the dialog and waits until the work has returned.
  EXPECT_FALSE(dialog.run(*this, 0));
  EXPECT_EQ(1, told);
  EXPECT_EQ(0, window().shutdowns);
  EXPECT_TRUE(runUntil([&] { return window().shutdowns == 1; }));
}

TEST_F(ProgressDialogTest, CancelIsSeenByTheWorkAndByTheCaller) {
  ProgressDialog dialog(&mainWindow(), u"Caption", u"Heading", 5,
                        ProgressDialog::PERCENT_BAR | ProgressDialog::CAN_CANCEL);
  m_work = [&](Progress& progress) {
    EXPECT_FALSE(progress.isCancelled());
    press(dialog, "Cancel");
    progress.step(1, u"one");
    EXPECT_TRUE(progress.isCancelled());
  };
  EXPECT_FALSE(dialog.run(*this, 0));
  EXPECT_FALSE(dialog.shown());
}

TEST_F(ProgressDialogTest, CancelOnAHiddenDialogDoesNothing) {
  ProgressDialog dialog(&mainWindow(), u"Caption", u"Heading", 5);
  dialog.handle(&app(), FXSEL(SEL_COMMAND, FXDialogBox::ID_CANCEL), nullptr);
  EXPECT_FALSE(dialog.isCancelled());
  EXPECT_FALSE(bigMutex().heldByThisThread());
}

TEST_F(ProgressDialogTest, TheCancelButtonIsThereOnRequestOnly) {
  ProgressDialog without(&mainWindow(), u"Caption", u"Heading", 5);
  EXPECT_FALSE(button(without, "Cancel").shown());
  ProgressDialog with(&mainWindow(), u"Caption", u"Heading", 5, ProgressDialog::CAN_CANCEL);
  EXPECT_TRUE(button(with, "Cancel").shown());
}

TEST_F(ProgressDialogTest, AFailurePropagatesAfterTheDialogIsHidden) {
  ProgressDialog dialog(&mainWindow(), u"Caption", u"Heading", 5);
  m_work = [](Progress&) {
    throw Exception(u"There was a failure during startup. Please restart Tallymoor");
  };
  EXPECT_THROW(dialog.run(*this, 0), Exception);
  EXPECT_FALSE(dialog.shown());
}

TEST_F(ProgressDialogTest, FinishFillsTheBar) {
  ProgressDialog dialog(&mainWindow(), u"Caption", u"Heading", 7);
  m_work = [&](Progress& progress) {
    progress.step(2, u"two of seven");
    dialog.finish();
  };
  dialog.run(*this, 0);
  EXPECT_EQ(7u, find<FXProgressBar>(dialog)->getProgress());
}

TEST_F(ProgressDialogTest, ALongHeadingIsNotCutOff) {
  ProgressDialog dialog(&mainWindow(), u"Tallymoor startup",
                        u"Please wait while caches and portfolio are loaded.", 5);
  dialog.run(*this, 0);
  for (FXLabel* label : findAll<FXLabel>(dialog)) {
    if (label->shown()) {
      EXPECT_GE(label->getWidth(), label->getDefaultWidth()) << label->getText().text();
    }
  }
}

TEST_F(ProgressDialogTest, ATotalOfZeroIsHarmless) {
  ProgressDialog dialog(&mainWindow(), u"Caption", u"Heading", 0);
  EXPECT_TRUE(dialog.run(*this, 0));
  EXPECT_EQ(1u, dialog.total());
}

TEST_F(ProgressDialogTest, TheBarIsWideOrSmall) {
  ProgressDialog wide(&mainWindow(), u"Caption", u"Heading", 5);
  ProgressDialog small(&mainWindow(), u"Caption", u"Heading", 5, ProgressDialog::SMALL_BAR);
  for (ProgressDialog* dialog : {&wide, &small}) {
    dialog->resize(dialog->getDefaultWidth(), dialog->getDefaultHeight());
    dialog->layout();
    EXPECT_EQ(fxcolorfromname("DarkOliveGreen4"), find<FXProgressBar>(*dialog)->getBarColor());
  }
  EXPECT_GT(find<FXProgressBar>(wide)->getWidth(), find<FXProgressBar>(small)->getWidth());
  EXPECT_NE(0u, find<FXProgressBar>(wide)->getBarStyle() & PROGRESSBAR_PERCENTAGE);
  EXPECT_EQ(0u, find<FXProgressBar>(small)->getBarStyle() & PROGRESSBAR_PERCENTAGE);
}

TEST_F(ProgressDialogTest, LooksAsTold) {
  FXIcon banner(&app(), nullptr, 0, IMAGE_OWNED, 30, 60);
  ProgressDialog dialog(&mainWindow(), u"Caption", u"Heading", 5, ProgressDialog::PERCENT_BAR, &banner);
  EXPECT_EQ(&banner, find<FXLabel>(dialog)->getIcon());
  auto* log = find<FXText>(dialog);
  EXPECT_EQ(FXRGB(211, 211, 211), log->getBackColor());
  EXPECT_EQ(FXRGB(211, 211, 211), log->getActiveBackColor());
  for (FXLabel* label : findAll<FXLabel>(dialog)) {
    if (label->getText() == "Heading") {
      EXPECT_EQ(mainWindow().largerFont(), label->getFont());
    }
  }
}

} // namespace
} // namespace Tallymoor
