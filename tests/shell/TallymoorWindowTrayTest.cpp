#include "ShellTest.h"
#include "foundation/RunTimeSettings.h"
#include "shell/WarningStrip.h"
#include "support/desktop/TestDesktop.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/ContextMenu.h"
#include <filesystem>
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// The main window in a desktop session. Each test starts the panel and the notification service it needs.
class TallymoorWindowTrayTest : public ShellTest {
protected:
  TallymoorWindowTrayTest() { m_desktop.emplace(profile().folder()); }
  void TearDown() override {
    ShellTest::TearDown();
    m_desktop.reset();
  }

  TestDesktop& desktop() { return *m_desktop; }
  bool serveUntil(const std::function<bool()>& condition) {
    return runUntil([&] {
      m_desktop->serve();
      return condition();
    });
  }
  /// Starts a panel and waits for our icon in it.
  void startPanel() {
    desktop().startPanel();
    serveUntil([this] { return tallymoor().tray().hasPlace(); });
  }
  void startNotifications() { desktop().startNotifications({"body"}); }
  std::vector<std::string> noticeTitles() {
    std::vector<std::string> titles;
    for (const auto& notice : desktop().notifications().notices())
      titles.push_back(notice.title);
    return titles;
  }
  std::string tip() {
    desktop().panel().ask("ToolTip");
    serveUntil([this] { return desktop().panel().answer().has_value(); });
    return std::get<2>(desktop().panel().answer()->get<TestPanel::ToolTip>());
  }

  void timer(FXuint id) { tallymoor().trayController().handle(&app(), FXSEL(SEL_TIMEOUT, id), nullptr); }
  void knowTheTray() { Settings::Instance().writeInt(u"Gui Settings", u"MinimizeWarn", 1); }
  /// Without a window manager, windows are never minimised. A window off the screen counts as minimised.
  void moveOffScreen() {
    tallymoor().move(-50, -60);
    letEventsPass();
  }
  void hideInTray() {
    knowTheTray();
    if (!tallymoor().tray().hasPlace())
      startPanel();
    moveOffScreen();
    ASSERT_FALSE(tallymoor().shown());
  }
  void click(const std::string& method) {
    desktop().panel().click(method);
    serveUntil([this] { return desktop().panel().allClicksAnswered(); });
    letEventsPass();
  }
  void warn(const String& text, const String& key, int level) {
    BigMutexLock lock;
    tallymoor().warnOnce(text, u"Warning from Tallymoor!", key, level);
  }
  void over(const String& key) {
    BigMutexLock lock;
    tallymoor().warningOver(key);
  }

private:
  std::optional<TestDesktop> m_desktop;
};

// ---- Minimising ----

TEST_F(TallymoorWindowTrayTest, WithoutAPanelTheWindowStaysInTheTaskBar) {
  startNotifications();
  moveOffScreen();
  tallymoor().minimize(TRUE);
  letEventsPass();
  EXPECT_TRUE(tallymoor().shown());
  EXPECT_EQ(0, Settings::Instance().readInt(u"Gui Settings", u"MinimizeWarn")) << "no balloon was shown";
  desktop().serve();
  EXPECT_THAT(noticeTitles(), IsEmpty());
}

TEST_F(TallymoorWindowTrayTest, TheFirstTimeABalloonTellsWhereTheWindowGoes) {
  startPanel();
  startNotifications();
  moveOffScreen();
  EXPECT_TRUE(serveUntil([this] { return !desktop().notifications().notices().empty(); }));
  const auto notice = desktop().notifications().notices().at(0);
  EXPECT_EQ("Tallymoor System Tray Icon", notice.title);
  EXPECT_EQ("Tallymoor minimizes to the system tray for your convenience!", notice.text);
  EXPECT_EQ(0, notice.urgency);
  EXPECT_EQ(1, Settings::Instance().readInt(u"Gui Settings", u"MinimizeWarn"));
  EXPECT_EQ(1, Settings::Instance().readInt(u"Warnings", u"system tray notification"));
  EXPECT_TRUE(tallymoor().shown()) << "the user has a moment to read";
  EXPECT_TRUE(app().hasTimeout(&tallymoor().trayController(), TrayController::ID_HIDE_AFTER_BALLOON));
  EXPECT_LE(app().remainingTimeout(&tallymoor().trayController(), TrayController::ID_HIDE_AFTER_BALLOON),
            3000u);
  timer(TrayController::ID_HIDE_AFTER_BALLOON);
  EXPECT_FALSE(tallymoor().shown());
}

TEST_F(TallymoorWindowTrayTest, AfterwardsTheWindowGoesAtOnceAndSilently) {
  startNotifications();
  hideInTray();
  EXPECT_FALSE(tallymoor().shown());
  desktop().serve();
  EXPECT_THAT(noticeTitles(), IsEmpty());
}

TEST_F(TallymoorWindowTrayTest, TheMinimiseMessageHidesToo) {
  knowTheTray();
  startPanel();
  tallymoor().minimize(TRUE);
  letEventsPass();
  EXPECT_FALSE(tallymoor().shown());
}

TEST_F(TallymoorWindowTrayTest, AWindowThatIsFetchedBackAtOnceStays) {
  startPanel();
  moveOffScreen();
  click("Activate");
  EXPECT_FALSE(app().hasTimeout(&tallymoor().trayController(), TrayController::ID_HIDE_AFTER_BALLOON));
  timer(TrayController::ID_HIDE_AFTER_BALLOON); // A timer that was already running.
  EXPECT_TRUE(tallymoor().shown());
}

TEST_F(TallymoorWindowTrayTest, AWindowDoesNotHideBehindAPanelThatHasGoneMeanwhile) {
  startPanel();
  moveOffScreen();
  desktop().stopPanel();
  EXPECT_TRUE(runUntil([this] { return !tallymoor().tray().hasPlace(); }));
  timer(TrayController::ID_HIDE_AFTER_BALLOON);
  EXPECT_TRUE(tallymoor().shown());
}

// ---- Restoring ----

TEST_F(TallymoorWindowTrayTest, AClickOnTheIconBringsTheWindowBackIntoSight) {
  hideInTray();
  click("Activate");
  EXPECT_TRUE(tallymoor().shown());
  EXPECT_EQ(100, tallymoor().getX());
  EXPECT_EQ(100, tallymoor().getY());
  letEventsPass();
  EXPECT_TRUE(tallymoor().shown()) << "it must not count as minimised again";
}

TEST_F(TallymoorWindowTrayTest, AHiddenWindowComesBackWhenThePanelHasGone) {
  hideInTray();
  desktop().stopPanel();
  EXPECT_TRUE(runUntil(
      [this] { return app().hasTimeout(&tallymoor().trayController(), TrayController::ID_TRAY_GONE); }));
  EXPECT_FALSE(tallymoor().shown()) << "the panel may only be restarting";
  timer(TrayController::ID_TRAY_GONE);
  EXPECT_TRUE(tallymoor().shown());
}

TEST_F(TallymoorWindowTrayTest, AHiddenWindowStaysSoWhenThePanelOnlyStartsAnew) {
  hideInTray();
  desktop().stopPanel();
  EXPECT_TRUE(runUntil(
      [this] { return app().hasTimeout(&tallymoor().trayController(), TrayController::ID_TRAY_GONE); }));
  startPanel();
  letEventsPass();
  EXPECT_FALSE(app().hasTimeout(&tallymoor().trayController(), TrayController::ID_TRAY_GONE));
  timer(TrayController::ID_TRAY_GONE);
  EXPECT_FALSE(tallymoor().shown());
}

TEST_F(TallymoorWindowTrayTest, AHiddenWindowComesBackWhenTheBusIsLost) {
  hideInTray();
  desktop().stopPanel();
  desktop().bus().stop();
  EXPECT_TRUE(runUntil(
      [this] { return app().hasTimeout(&tallymoor().trayController(), TrayController::ID_TRAY_GONE); }));
  timer(TrayController::ID_TRAY_GONE);
  EXPECT_TRUE(tallymoor().shown());
}

// ---- The popup ----

TEST_F(TallymoorWindowTrayTest, ThePopupOfAWindowInSightOffersNoOpening) {
  startPanel();
  whenModal("About Tallymoor", [](FXWindow& menu) {
    EXPECT_THAT(labels(menu), ElementsAre("About Tallymoor", "Refresh current prices", "Exit"));
    dynamic_cast<FXPopup&>(menu).popdown();
  });
  click("ContextMenu");
}

TEST_F(TallymoorWindowTrayTest, ThePopupOfAHiddenWindowOpensIt) {
  hideInTray();
  whenModal("About Tallymoor", [this](FXWindow& menu) {
    EXPECT_THAT(labels(menu),
                ElementsAre("About Tallymoor", "Open Tallymoor", "Refresh current prices", "Exit"));
    press(menu, "Open Tallymoor");
  });
  click("ContextMenu");
  EXPECT_TRUE(tallymoor().shown());
}

TEST_F(TallymoorWindowTrayTest, ThePopupShowsTheAboutBoxWhileTheWindowIsHidden) {
  hideInTray();
  whenModal("Open Tallymoor", [this](FXWindow& menu) { press(menu, "About Tallymoor"); });
  whenModal("Version 1.3.1", [this](FXWindow& dialog) { press(dialog, "OK"); });
  click("ContextMenu");
  letEventsPass();
}

TEST_F(TallymoorWindowTrayTest, ThePopupEndsTheProgramAsExitDoes) {
  hideInTray();
  whenModal("Open Tallymoor", [this](FXWindow& menu) { press(menu, "Exit"); });
  click("ContextMenu");
  EXPECT_TRUE(runUntil([this] { return tallymoor().isShuttingDown(); }));
  EXPECT_TRUE(TestProfile::fileExists(recordsPath()));
}

TEST_F(TallymoorWindowTrayTest, ASecondClickOpensNoSecondPopup) {
  startPanel();
  whenModal("About Tallymoor", [this](FXWindow& menu) {
    click("ContextMenu");
    EXPECT_EQ(&menu, app().getModalWindow());
    dynamic_cast<FXPopup&>(menu).popdown();
  });
  click("ContextMenu");
}

TEST_F(TallymoorWindowTrayTest, WithADialogOpenARightClickLeadsToIt) {
  startPanel();
  whenModal("Version 1.3.1", [this](FXWindow& dialog) {
    click("ContextMenu");
    EXPECT_EQ(&dialog, app().getModalWindow()) << "no popup lies above it";
    press(dialog, "OK");
  });
  command(TallymoorWindow::ID_ABOUT);
}

class PopupOfThePanelTest : public TallymoorWindowTrayTest {
protected:
  std::vector<std::string> menu() {
    desktop().panel().readMenu();
    serveUntil([this] { return desktop().panel().menu().has_value(); });
    return *desktop().panel().menu();
  }
  void choose(const std::string& line) {
    menu();
    desktop().panel().choose(line);
    serveUntil([this] { return desktop().panel().allClicksAnswered(); });
    letEventsPass();
  }
};

TEST_F(PopupOfThePanelTest, HoldsTheSameCommands) {
  startPanel();
  EXPECT_THAT(menu(), ElementsAre("About Tallymoor", "Refresh current prices", "-", "Exit"));
  const unsigned before = desktop().panel().menuChanges();
  hideInTray();
  EXPECT_TRUE(serveUntil([this, before] { return desktop().panel().menuChanges() > before; }));
  EXPECT_THAT(menu(),
              ElementsAre("About Tallymoor", "-", "Open Tallymoor", "Refresh current prices", "-", "Exit"));
  choose("Open Tallymoor");
  EXPECT_TRUE(tallymoor().shown());
  EXPECT_THAT(menu(), SizeIs(4));
}

TEST_F(PopupOfThePanelTest, EndsTheProgram) {
  startPanel();
  choose("Exit");
  EXPECT_TRUE(runUntil([this] { return tallymoor().isShuttingDown(); }));
}

TEST_F(PopupOfThePanelTest, WithADialogOpenACommandLeadsToIt) {
  startPanel();
  whenModal("Version 1.3.1", [this](FXWindow& dialog) {
    choose("About Tallymoor");
    EXPECT_EQ(&dialog, app().getModalWindow()) << "no second box";
    press(dialog, "OK");
  });
  command(TallymoorWindow::ID_ABOUT);
}

// ---- Warnings ----

TEST_F(TallymoorWindowTrayTest, AWarningIsANotificationAndStaysInTheWindow) {
  startNotifications();
  warn(u"It has fallen.", u"a", 1);
  warn(u"It has fallen again.", u"a", 1);
  warn(u"It has failed.", u"b", 2);
  EXPECT_TRUE(serveUntil([this] { return desktop().notifications().notices().size() == 2; }));
  EXPECT_EQ("It has fallen.", desktop().notifications().notices()[0].text);
  EXPECT_EQ(1, desktop().notifications().notices()[0].urgency);
  EXPECT_EQ("It has failed.", desktop().notifications().notices()[1].text);
  EXPECT_EQ(2, desktop().notifications().notices()[1].urgency);
  EXPECT_THAT(tallymoor().warnings()->shownTexts(),
              ElementsAre(String(u"It has fallen again."), String(u"It has failed.")));
}

TEST_F(TallymoorWindowTrayTest, ANoteStandsInTheWindowOnlyIfNoServiceShowsIt) {
  warn(u"Updates are available.", String(), 0);
  EXPECT_TRUE(runUntil([this] { return tallymoor().warnings()->shownTexts().size() == 1; }));
  startNotifications();
  letEventsPass();
  warn(u"Updates are available.", String(), 0);
  EXPECT_TRUE(serveUntil([this] { return desktop().notifications().notices().size() == 1; }));
  letEventsPass();
  EXPECT_THAT(tallymoor().warnings()->shownTexts(), SizeIs(1));
}

TEST_F(TallymoorWindowTrayTest, ANoteInTheWindowGoesWithItsCause) {
  warn(u"Updates are available.", u"updates1", 0);
  EXPECT_TRUE(runUntil([this] { return tallymoor().warnings()->shownTexts().size() == 1; }));
  over(u"updates1");
  letEventsPass();
  EXPECT_THAT(tallymoor().warnings()->shownTexts(), IsEmpty());
  warn(u"Updates are available.", u"updates2", 0);
  over(u"updates2"); // Before it is known that no service shows it.
  warn(u"Something else.", u"c", 0);
  EXPECT_TRUE(runUntil([this] { return !tallymoor().warnings()->shownTexts().empty(); }));
  EXPECT_THAT(tallymoor().warnings()->shownTexts(), ElementsAre(String(u"Something else.")));
}

// ---- A portfolio with a share that has price limits ----

class TrayWithPricesTest : public TallymoorWindowTrayTest {
protected:
  TrayWithPricesTest() {
    TestProfile::writeFile(
        recordsPath(),
        "<Portfolios><SharePortfolio><String>Trading</String><HeldShares><HeldShare><String>ABC.AX</String>"
        "<BuyEvent><Date>2/2/2026</Date><Constant>100.00</Constant><Constant>10.0000</Constant>"
        "<Constant>0.00</Constant><String/></BuyEvent><Constant>9.0000</Constant>"
        "<Constant>12.0000</Constant><Constant/></HeldShare></HeldShares><SoldShares/><Dividends/>"
        "<CashReserve/><String/></SharePortfolio></Portfolios>");
    market().setHistory(u"ABC.AX", Date(2026, 1, 2), Date(2026, 3, 2), 10.0);
    market().setCurrentPrice(u"ABC.AX", 10.0);
  }
  ~TrayWithPricesTest() override { trayFormat = String(); }
  void priceComes(double price) {
    market().setCurrentPrice(u"ABC.AX", price);
    TallymoorInternet::Instance().priceUpdater().runPass();
    letEventsPass();
  }
};

TEST_F(TrayWithPricesTest, TheTipFollowsThePrices) {
  startPanel();
  EXPECT_EQ("Total Capital today: 0.00%", tip());
  priceComes(10.5);
  EXPECT_EQ("Total Capital today: 5.00%", tip());
  trayFormat = u"Trading";
  priceComes(9.5);
  EXPECT_EQ("Trading : -5.00% (n/a)", tip());
}

TEST_F(TrayWithPricesTest, TheTipFollowsAChangeOfTheViews) {
  startPanel();
  trayFormat = u"Trading";
  BigMutexLock lock;
  tallymoor().refreshViews(true);
  EXPECT_EQ("Trading : +0.00% (n/a)", tip());
}

TEST_F(TrayWithPricesTest, EachSideOfALimitIsNotifiedOnceARun) {
  startNotifications();
  for (const double price : {8.5, 8.4, 12.5, 12.6, 8.3})
    priceComes(price);
  EXPECT_TRUE(serveUntil([this] { return desktop().notifications().notices().size() >= 2; }));
  letEventsPass();
  desktop().serve();
  const auto& notices = desktop().notifications().notices();
  ASSERT_THAT(notices, SizeIs(2));
  EXPECT_EQ("Warning from Tallymoor!", notices[0].title);
  EXPECT_EQ("ABC.AX has dropped below $9.00 and is now at $8.50", notices[0].text);
  EXPECT_EQ("ABC.AX has increased above$12.00 and is now at $12.50", notices[1].text);
}

TEST_F(TrayWithPricesTest, LoggingOutWhileTheWindowIsHiddenSavesTheData) {
  hideInTray();
  std::filesystem::remove(recordsPath().toUTF8());
  tallymoor().handle(&app(), FXSEL(SEL_SIGNAL, MainWindow::ID_SHUTDOWN), nullptr);
  EXPECT_TRUE(runUntil([this] { return tallymoor().isShuttingDown(); }));
  EXPECT_NE(std::string::npos, TestProfile::readFile(recordsPath()).find("<String>ABC.AX</String>"));
}

} // namespace
} // namespace Tallymoor
