#include "widgets/MainWindow.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "support/windows/WindowTest.h"
#include "widgets/Dialog.h"
#include "widgets/HandlerScope.h"
#include "widgets/ProgressDialog.h"
#include <csignal>
#include <fxkeys.h>
#include <thread>

namespace Tallymoor {
namespace {

std::string captionOfBox(FXWindow& box) {
  return dynamic_cast<FXTopWindow&>(box).getTitle().text();
}

class MainWindowTest : public WindowTest {
protected:
  FXStatusLine& statusLine() { return *mainWindow().statusBar()->getStatusLine(); }

  /// The text that a message box shows for a message.
  std::string shownAs(const String& message) {
    std::string text;
    whenModal("Tallymoor", [&](FXWindow& box) {
      for (const std::string& label : labels(box))
        if (label != "OK")
          text = label;
      press(box, "OK");
    });
    MainWindow::information(message);
    return text;
  }
};

TEST_F(MainWindowTest, InstanceWithoutWindowThrows) {
  EXPECT_EQ(&mainWindow(), &MainWindow::Instance());
  EXPECT_TRUE(MainWindow::exists());
  deleteWindow();
  EXPECT_FALSE(MainWindow::exists());
  EXPECT_FALSE(UserInteraction::exists());
  try {
    MainWindow::Instance();
    FAIL() << "there is no window";
  } catch (const Exception& exception) {
    EXPECT_EQ(String(u"MainWindow::Instance - no MainWindow yet!"), exception.message());
  }
  EXPECT_THROW(MainWindow::mutex(), Exception);
  EXPECT_THROW(MainWindow::error(u"lost"), Exception);
  EXPECT_THROW(MainWindow::setStatusText(u"lost"), Exception);
}

TEST_F(MainWindowTest, ItsMutexIsTheBigOne) {
  EXPECT_EQ(&bigMutex(), &MainWindow::mutex());
}

TEST_F(MainWindowTest, OpensAsTold) {
  EXPECT_STREQ("Tallymoor", mainWindow().getTitle().text());
  EXPECT_EQ(100, mainWindow().getX());
  EXPECT_EQ(100, mainWindow().getY());
  EXPECT_EQ(1000, mainWindow().getWidth());
  EXPECT_EQ(600, mainWindow().getHeight());
  EXPECT_TRUE(mainWindow().shown());
}

TEST_F(MainWindowTest, FramesLieFromTopToBottom) {
  MainWindow& window = mainWindow();
  new FXLabel(window.contentFrame(), "contents");
  new FXLabel(window.panelFrame(), "strip");
  window.FXMainWindow::create();
  window.layout();
  EXPECT_EQ(0, window.menuBar()->getY());
  auto* separator = dynamic_cast<FXHorizontalSeparator*>(window.menuBar()->getNext());
  ASSERT_NE(nullptr, separator);
  EXPECT_GE(separator->getY(), window.menuBar()->getY() + window.menuBar()->getHeight());
  EXPECT_GE(window.contentFrame()->getY(), separator->getY() + separator->getHeight());
  EXPECT_GE(window.panelFrame()->getY(), window.contentFrame()->getY() + window.contentFrame()->getHeight());
  EXPECT_GE(window.statusFrame()->getY(), window.panelFrame()->getY() + window.panelFrame()->getHeight());
  EXPECT_LE(window.statusFrame()->getY() + window.statusFrame()->getHeight(), window.getHeight());
  EXPECT_GT(window.contentFrame()->getHeight(), 400);
  EXPECT_EQ(window.statusFrame(), window.statusBar()->getParent());
  EXPECT_EQ(window.normalFont()->getFontHeight() + 10, window.statusBar()->getHeight());
}

TEST_F(MainWindowTest, UsesTheProgramsFonts) {
  EXPECT_STREQ("Ariel", mainWindow().normalFont()->getName().text());
  EXPECT_EQ(90u, mainWindow().normalFont()->getSize());
  EXPECT_EQ(100u, mainWindow().boldFont()->getSize());
  EXPECT_EQ(static_cast<FXuint>(FXFont::Bold), mainWindow().boldFont()->getWeight());
  EXPECT_EQ(120u, mainWindow().largeFont()->getSize());
  EXPECT_EQ(150u, mainWindow().largerFont()->getSize());
  EXPECT_EQ(mainWindow().normalFont(), app().getNormalFont());
  deleteWindow();
  ASSERT_NE(nullptr, app().getNormalFont());
  EXPECT_STRNE("Ariel", app().getNormalFont()->getName().text());
}

// Message boxes

TEST_F(MainWindowTest, EachKindOfMessageHasItsButtons) {
  for (auto tell : {&MainWindow::information, &MainWindow::warning, &MainWindow::error}) {
    whenModal("told", [&](FXWindow& box) {
      EXPECT_EQ("Tallymoor", captionOfBox(box));
      EXPECT_EQ(nullptr, findButton(box, "Yes"));
      press(box, "OK");
    });
    tell(u"told");
  }
  EXPECT_EQ((std::vector<std::string>{"told", "told", "told"}), boxes());
}

TEST_F(MainWindowTest, OnlyYesReturnsTrue) {
  answer("sure?", "Yes");
  EXPECT_TRUE(MainWindow::question(u"sure?"));
  answer("sure?", "No");
  EXPECT_FALSE(MainWindow::question(u"sure?"));
  whenModal("sure?", [&](FXWindow& box) { key(box, KEY_Escape); });
  EXPECT_FALSE(MainWindow::question(u"sure?"));
}

TEST_F(MainWindowTest, ReportHasContextBlankDescription) {
  answer("TallymoorWindow::onAbout failed. Exception : no picture", "OK");
  MainWindow::reportException(u"TallymoorWindow::onAbout failed.", Exception(u"no picture"));
  answer("Thrower::work failed. HTTPException : ", "OK");
  MainWindow::reportException(u"Thrower::work failed.", HTTPException(String()));
}

TEST_F(MainWindowTest, PercentSignsAndAmpersandsShowAsTyped) {
  EXPECT_EQ("%n%s%x", shownAs(u"%n%s%x"));
  EXPECT_EQ("up 5%", shownAs(u"up 5%"));
  EXPECT_EQ("A & B && C", shownAs(u"A & B && C"));
  EXPECT_EQ("%d of &Co at 10%", shownAs(u"%d of &Co at 10%"));
}

TEST_F(MainWindowTest, APairOfPercentSignsGoesThroughTheFormatter) {
  EXPECT_EQ("up 5% today", shownAs(u"up 5%% today"));
  EXPECT_EQ("%%", shownAs(u"%%%"));
}

TEST_F(MainWindowTest, TabsAndControlsDoNotCutAMessage) {
  EXPECT_EQ("one two three", shownAs(u"one\ttwo\u0007 three"));
  EXPECT_EQ("first\nsecond", shownAs(u"first\r\nsecond"));
}

TEST_F(MainWindowTest, LongLinesAreBroken) {
  const String word = u"12345678 ";
  String line;
  for (int i = 0; i < 30; ++i)
    line += word;
  const std::string shown = shownAs(line + u"\nend");
  EXPECT_NE(std::string::npos, shown.find("\nend"));
  for (std::size_t begin = 0; begin < shown.size();) {
    const std::size_t end = std::min(shown.find('\n', begin), shown.size());
    EXPECT_LE(end - begin, 150u);
    begin = end + 1;
  }
}

TEST_F(MainWindowTest, ABoxFitsTheScreenAlsoWithAWholePageInALargeFont) {
  String page;
  for (int i = 0; i < 20'000; ++i)
    page += u"<td>wwwwwwwwwwww</td> ";
  FXFont* usual = app().getNormalFont();
  for (const FXuint size : {9u, 18u, 30u}) {
    FXFont font(&app(), "Ariel", size);
    app().setNormalFont(&font);
    whenModal("TallymoorWindow::onImport", [&](FXWindow& box) {
      EXPECT_LT(box.getWidth(), app().getRootWindow()->getWidth()) << size;
      EXPECT_LT(box.getHeight(), app().getRootWindow()->getHeight()) << size;
      EXPECT_TRUE(shows(box, "Shall we try?")) << "the end is shown too";
      press(box, "Yes");
    });
    EXPECT_TRUE(MainWindow::question(u"TallymoorWindow::onImport failed. HTTPException : " + page +
                                     u"\nShall we try?"));
    app().setNormalFont(usual);
  }
}

TEST_F(MainWindowTest, ABackgroundPassOpensNoBox) {
  const BackgroundPassScope pass;
  MainWindow::error(u"went wrong");
  EXPECT_STREQ("went wrong", statusLine().getText().text());
  EXPECT_FALSE(MainWindow::question(u"shall I?"));
  EXPECT_STREQ("shall I?", statusLine().getText().text());
}

TEST_F(MainWindowTest, AnotherThreadOpensNoBox) {
  bool answered = true;
  std::thread worker([&] { answered = MainWindow::question(u"from afar"); });
  worker.join();
  EXPECT_FALSE(answered);
  EXPECT_TRUE(runUntil([&] { return statusLine().getText() == "from afar"; }));
}

TEST_F(MainWindowTest, ABoxAboveADialogBelongsToIt) {
  Dialog dialog(&mainWindow(), u"Form", String());
  whenModal("Form", [&](FXWindow& form) {
    whenModal("wrong", [&](FXWindow& box) {
      EXPECT_EQ(&form, box.getOwner());
      press(box, "OK");
    });
    MainWindow::error(u"wrong");
    press(form, "Cancel");
  });
  dialog.execute();
  whenModal("alone", [&](FXWindow& box) {
    EXPECT_EQ(&mainWindow(), box.getOwner());
    press(box, "OK");
  });
  MainWindow::error(u"alone");
}

// The status line

TEST_F(MainWindowTest, StatusTextsFromTheGuiThreadShowAtOnce) {
  MainWindow::setNormalStatusText(u"Ready");
  EXPECT_STREQ("Ready", statusLine().getNormalText().text());
  MainWindow::setStatusText(u"caf\u00e9 & co");
  EXPECT_STREQ("caf\xC3\xA9 & co", statusLine().getText().text());
}

TEST_F(MainWindowTest, StatusTextsFromAnotherThreadAreShownByAWakeUp) {
  std::thread worker([] {
    MainWindow::setNormalStatusText(u"first");
    MainWindow::setNormalStatusText(u"second");
    UserInteraction::Instance().setNormalStatusText(u"last");
  });
  worker.join();
  EXPECT_STRNE("last", statusLine().getNormalText().text());
  EXPECT_TRUE(runUntil([&] { return statusLine().getNormalText() == "last"; }));
}

TEST_F(MainWindowTest, ATextOfTheGuiThreadIsNotOvertakenByAnOlderOne) {
  std::thread worker([] { MainWindow::setNormalStatusText(u"older"); });
  worker.join();
  MainWindow::setNormalStatusText(u"newer");
  letEventsPass();
  EXPECT_STREQ("newer", statusLine().getNormalText().text());
}

// Leaving the program

TEST_F(MainWindowTest, ShutdownRunsOnceAndIsMarkedAtItsStart) {
  bool markedBefore = false, held = false;
  window().onShutdownRuns = [&] {
    markedBefore = mainWindow().isShuttingDown();
    held = bigMutex().heldByThisThread();
    mainWindow().handle(&app(), FXSEL(SEL_COMMAND, MainWindow::ID_SHUTDOWN), nullptr);
  };
  EXPECT_FALSE(mainWindow().isShuttingDown());
  mainWindow().handle(&app(), FXSEL(SEL_COMMAND, MainWindow::ID_SHUTDOWN), nullptr);
  mainWindow().handle(&app(), FXSEL(SEL_COMMAND, MainWindow::ID_SHUTDOWN), nullptr);
  EXPECT_EQ(1, window().shutdowns);
  EXPECT_TRUE(markedBefore);
  EXPECT_TRUE(held);
  EXPECT_FALSE(bigMutex().heldByThisThread());
}

TEST_F(MainWindowTest, AltF4IsExit) {
  key(mainWindow(), KEY_F4, ALTMASK);
  EXPECT_EQ(1, window().shutdowns);
}

TEST_F(MainWindowTest, TheCloseBoxIsExitAndKeepsTheWindow) {
  mainWindow().handle(&app(), FXSEL(SEL_CLOSE, 0), nullptr);
  EXPECT_EQ(1, window().shutdowns);
  EXPECT_EQ(&mainWindow(), &MainWindow::Instance());
}

TEST_F(MainWindowTest, EndingSignalsAreExit) {
  std::raise(SIGTERM);
  EXPECT_TRUE(runUntil([&] { return window().shutdowns == 1; }));
}

TEST_F(MainWindowTest, InterruptAndHangUpAreExit) {
  window().onShutdownRuns = [] { throw Exception(u"not yet"); };
  answer("MainWindow::onShutdown failed. Exception : not yet", "OK");
  std::raise(SIGINT);
  EXPECT_TRUE(runUntil([&] { return window().shutdowns == 1 && !mainWindow().isShuttingDown(); }));
  window().onShutdownRuns = nullptr;
  std::raise(SIGHUP);
  EXPECT_TRUE(runUntil([&] { return window().shutdowns == 2; }));
}

TEST_F(MainWindowTest, ShutdownCancelsTheDialogAndWaitsForItsHandler) {
  Dialog dialog(&mainWindow(), u"Form", String());
  int shutdownsInHandler = -1;
  whenModal("Form", [&](FXWindow&) {
    mainWindow().handle(&app(), FXSEL(SEL_COMMAND, MainWindow::ID_SHUTDOWN), nullptr);
  });
  guardedHandler(u"Test::onForm failed.", [&] {
    EXPECT_EQ(0u, dialog.execute());
    shutdownsInHandler = window().shutdowns;
  });
  EXPECT_EQ(0, shutdownsInHandler);
  EXPECT_TRUE(runUntil([&] { return window().shutdowns == 1; }));
}

TEST_F(MainWindowTest, ShutdownCancelsEveryDialogOfAHandler) {
  std::vector<int> shutdowns;
  whenModal("first?", [&](FXWindow&) { std::raise(SIGTERM); });
  guardedHandler(u"Test::onForms failed.", [&] {
    EXPECT_FALSE(MainWindow::question(u"first?"));
    EXPECT_FALSE(MainWindow::question(u"second?"));
    Dialog dialog(&mainWindow(), u"third", String());
    EXPECT_EQ(0u, dialog.execute());
    shutdowns.push_back(window().shutdowns);
  });
  EXPECT_EQ(std::vector<int>{0}, shutdowns);
  EXPECT_TRUE(runUntil([&] { return window().shutdowns == 1; }));
}

TEST_F(MainWindowTest, ShutdownFromAPopupWaitsForThePopup) {
  auto menu = std::make_unique<FXMenuPane>(&mainWindow());
  new FXMenuCommand(menu.get(), "Exit", nullptr, &mainWindow(), MainWindow::ID_SHUTDOWN);
  menu->create();
  std::vector<int> shutdowns;
  FXMenuPane* pane = menu.get();
  whenModal("Exit", [&](FXWindow& popup) { press(popup, "Exit"); });
  {
    BigMutexLock lock;
    pane->popup(nullptr, 200, 200);
    app().runPopup(pane);
    shutdowns.push_back(window().shutdowns);
  }
  menu.reset();
  EXPECT_EQ(std::vector<int>{0}, shutdowns);
  EXPECT_TRUE(runUntil([&] { return window().shutdowns == 1; }));
}

// Minimising

TEST_F(MainWindowTest, BothCoordinatesNegativeCountAsMinimised) {
  mainWindow().move(-30, -20);
  EXPECT_TRUE(runUntil([&] { return window().minimises > 0; }));
}

TEST_F(MainWindowTest, OneNegativeCoordinateDoesNot) {
  mainWindow().move(-30, 20);
  EXPECT_TRUE(runUntil([&] { return mainWindow().getX() == -30; }));
  letEventsPass();
  mainWindow().move(30, -20);
  letEventsPass();
  EXPECT_EQ(0, window().minimises);
}

TEST_F(MainWindowTest, TheMinimiseMessageIsShownOnce) {
  mainWindow().handle(&mainWindow(), FXSEL(SEL_MINIMIZE, MainWindow::ID_MAINWINDOW), nullptr);
  mainWindow().handle(&mainWindow(), FXSEL(SEL_MINIMIZE, MainWindow::ID_MAINWINDOW), nullptr);
  EXPECT_EQ(1, window().minimises);
  FXEvent event{};
  mainWindow().handle(&app(), FXSEL(SEL_MAP, 0), &event);
  mainWindow().handle(&mainWindow(), FXSEL(SEL_MINIMIZE, MainWindow::ID_MAINWINDOW), nullptr);
  EXPECT_EQ(2, window().minimises);
}

TEST_F(MainWindowTest, TheMinimiseCommandReachesIt) {
  mainWindow().handle(&app(), FXSEL(SEL_COMMAND, FXTopWindow::ID_MINIMIZE), nullptr);
  letEventsPass();
  EXPECT_EQ(1, window().minimises);
}

// Updates

TEST_F(MainWindowTest, UpdatesRefreshTheStatus) {
  const int before = window().statusUpdates;
  mainWindow().handle(&mainWindow(), FXSEL(SEL_UPDATE, MainWindow::ID_MAINWINDOW), nullptr);
  EXPECT_EQ(before + 1, window().statusUpdates);
}

/// A window whose hooks throw.
class FailingWindow : public TestWindow {
public:
  using TestWindow::TestWindow;
  void applicationTitle(String& title) const override { title = u"Failing"; }
  void minimiseToTray() override { throw Exception(u"no tray"); }
};

class FailingWindowTest : public WindowTest {
protected:
  std::unique_ptr<MainWindow> makeWindow(FXApp* app) override { return std::make_unique<FailingWindow>(app); }
};

TEST_F(FailingWindowTest, AFailingHookIsReportedAndTheCaptionIsTheWindowsOwn) {
  whenModal("MainWindow::onMinimise failed. Exception : no tray", [&](FXWindow& box) {
    EXPECT_EQ("Failing", captionOfBox(box));
    press(box, "OK");
  });
  mainWindow().handle(&mainWindow(), FXSEL(SEL_MINIMIZE, MainWindow::ID_MAINWINDOW), nullptr);
  EXPECT_FALSE(bigMutex().heldByThisThread());
}

// Requests from lower layers

TEST_F(MainWindowTest, LowerLayersUseTheSameBoxes) {
  UserInteraction& user = UserInteraction::Instance();
  answer("fine", "OK");
  user.information(u"fine");
  answer("careful", "OK");
  user.warning(u"careful");
  answer("bad", "OK");
  user.error(u"bad");
  answer("go on?", "Yes");
  EXPECT_TRUE(user.question(u"go on?"));
  answer("Work failed. XMLException : torn", "OK");
  user.reportException(u"Work failed.", XMLException(String(u"torn")));
  user.setStatusText(u"busy");
  EXPECT_STREQ("busy", statusLine().getText().text());
  user.warnOnce(u"text", u"caption", u"key", 1);
  ASSERT_EQ(1u, window().warnings.size());
  EXPECT_EQ(String(u"text"), window().warnings[0].text);
  EXPECT_EQ(1, window().warnings[0].level);
}

TEST_F(MainWindowTest, LowerLayersCanAskForAChoice) {
  UserInteraction& user = UserInteraction::Instance();
  whenModal("Country", [&](FXWindow& dialog) {
    press(dialog, "B & C");
    press(dialog, "OK");
  });
  EXPECT_EQ(std::optional<std::size_t>(1), user.chooseFromList(u"Country", u"Where?", {u"A", u"B & C"}));
  whenModal("Country", [&](FXWindow& dialog) { press(dialog, "Cancel"); });
  EXPECT_EQ(std::nullopt, user.chooseFromList(u"Country", u"Where?", {u"A"}));
}

TEST_F(MainWindowTest, LowerLayersCanAskForADateAndARatio) {
  UserInteraction& user = UserInteraction::Instance();
  whenModal("Start", [&](FXWindow& dialog) {
    EXPECT_TRUE(shows(dialog, "First day"));
    press(dialog, "OK");
  });
  EXPECT_EQ(std::optional<Date>(Date(2025, 7, 1)), user.askDate(u"Start", u"First day", Date(2025, 7, 1)));
  whenModal("Split", [&](FXWindow& dialog) { press(dialog, "OK"); });
  EXPECT_EQ(std::optional(WholeRatio{5, 2}), user.askRatio(u"Split", u"Ratio", u"new : old", 100, {5, 2}));
  whenModal("Split", [&](FXWindow& dialog) { key(dialog, KEY_Escape); });
  EXPECT_EQ(std::nullopt, user.askRatio(u"Split", u"Ratio", u"new : old", 100, {5, 2}));
}

struct CountingWork : HasLengthyFunctions {
  void runLengthyFunction(Progress& progress, int argument) override {
    for (int i = 0; i < argument; ++i)
      progress.step(1, u"step");
    ++runs;
  }
  int runs = 0;
};

TEST_F(MainWindowTest, LowerLayersCanRunLengthyWork) {
  CountingWork work;
  EXPECT_TRUE(UserInteraction::Instance().runLengthy(u"Caption", u"Heading", 3, work, 3));
  EXPECT_EQ(1, work.runs);
}

TEST_F(MainWindowTest, ABackgroundPassIsAskedNothingAndWorksUnseen) {
  const BackgroundPassScope pass;
  UserInteraction& user = UserInteraction::Instance();
  EXPECT_EQ(std::nullopt, user.chooseFromList(u"T", u"H", {u"A"}));
  EXPECT_EQ(std::nullopt, user.askDate(u"T", u"H", Date(2025, 7, 1)));
  EXPECT_EQ(std::nullopt, user.askRatio(u"T", u"H", u"R", 2, {1, 1}));
  CountingWork work;
  EXPECT_TRUE(user.runLengthy(u"Caption", u"Heading", 3, work, 3));
  EXPECT_EQ(1, work.runs);
}

} // namespace
} // namespace Tallymoor
