#include "desktop/DesktopTray.h"
#include "foundation/BigMutex.h"
#include "support/StringPrinting.h"
#include "support/desktop/TestDesktop.h"
#include "support/windows/WindowTest.h"
#include <gmock/gmock.h>
#include <optional>
#include <thread>

namespace Tallymoor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Records its calls, and whether they came during the handling of a bus message.
class NotingWatcher : public SystemTray::Watcher {
public:
  void onLeftClick() override { heard("left"); }
  void onRightClick() override { heard("right"); }
  void onDoubleClick() override { heard("double"); }
  void onMouseMove() override { heard("move"); }
  void onCommand(unsigned command) override { heard(("command " + std::to_string(command)).c_str()); }
  std::vector<SystemTray::MenuEntry> menuEntries() const override { return menu; }
  void onPlaceChanged() override { ++placeChanges; }
  void onBalloonNotShown(const String& text, const String& title, int level) override {
    EXPECT_TRUE(bigMutex().heldByThisThread());
    notShown.push_back(title + u"|" + text + u"|" + String::fromLong(level));
  }

  std::vector<SystemTray::MenuEntry> menu{{u"About A & B", 7}, {}, {u"Exit", 9}};
  std::vector<std::string> clicks;
  std::vector<String> notShown;
  int placeChanges = 0;
  bool clickedUnderTheMutex = false;

private:
  void heard(const char* click) {
    clicks.emplace_back(click);
    clickedUnderTheMutex |= bigMutex().heldByThisThread();
  }
};

/// Two pixels: a red one and a transparent blue one.
std::unique_ptr<FXIcon> twoPixels(FXApp* app) {
  static const FXColor pixels[] = {FXRGBA(255, 1, 2, 255), FXRGBA(3, 4, 250, 128)};
  return std::make_unique<FXIcon>(app, pixels, 0, IMAGE_KEEP, 2, 1);
}

/// A tray without a bus. The tests below start one.
class DesktopTrayTest : public WindowTest {
protected:
  void SetUp() override {
    WindowTest::SetUp();
    m_icon = twoPixels(&app());
    makeTray();
  }
  void TearDown() override {
    removeTray();
    m_icon.reset();
    WindowTest::TearDown();
  }
  void makeTray() {
    BigMutexLock lock;
    m_tray.reset();
    m_tray = std::make_unique<DesktopTray>(&app(), m_watcher, *m_icon, u"Tallymoor", options());
  }
  virtual DesktopTray::Options options() const {
    using std::chrono::milliseconds;
    return {std::chrono::minutes(10), milliseconds(5)};
  }
  void balloon(const String& text, const String& title, int level) {
    BigMutexLock lock;
    tray().showBalloon(text, title, level);
  }

  DesktopTray& tray() { return *m_tray; }
  NotingWatcher& watcher() { return m_watcher; }
  void removeTray() {
    BigMutexLock lock;
    m_tray.reset();
  }

private:
  NotingWatcher m_watcher;
  std::unique_ptr<FXIcon> m_icon;
  std::unique_ptr<DesktopTray> m_tray;
};

TEST_F(DesktopTrayTest, WithoutABusIsUnavailableAndReturnsBalloons) {
  EXPECT_FALSE(tray().hasPlace());
  EXPECT_EQ(&watcher(), &tray().watcher());
  tray().setTip(u"Total Capital today: 0.00%");
  balloon(u"text", u"title", 2);
  EXPECT_TRUE(runUntil([this] { return !watcher().notShown.empty(); }));
  EXPECT_THAT(watcher().notShown, ElementsAre(String(u"title|text|2")));
}

class TrayOnABusTest : public DesktopTrayTest {
protected:
  TrayOnABusTest() { m_desktop.emplace(profile().folder()); }
  void TearDown() override {
    DesktopTrayTest::TearDown();
    m_desktop.reset();
  }

  TestBus& bus() { return m_desktop->bus(); }
  void startPanel(bool hostThere = true) { m_desktop->startPanel(hostThere); }
  void stopPanel() { m_desktop->stopPanel(); }
  TestPanel& panel() { return m_desktop->panel(); }
  void startNotifications(const std::vector<std::string>& abilities) {
    m_desktop->startNotifications(abilities);
  }
  void stopNotifications() { m_desktop->stopNotifications(); }
  TestNotifications& notifications() { return m_desktop->notifications(); }

  /// Serves the desktop and the program until the condition holds.
  bool serveUntil(const std::function<bool()>& condition) {
    return runUntil([&] {
      m_desktop->serve();
      return condition();
    });
  }
  bool serveUntilPlace(bool there) {
    return serveUntil([this, there] { return tray().hasPlace() == there; });
  }
  template <class Value>
  Value property(const std::string& name) {
    panel().ask(name);
    serveUntil([this] { return panel().answer().has_value(); });
    return panel().answer()->get<Value>();
  }
  std::string tip() { return std::get<2>(property<TestPanel::ToolTip>("ToolTip")); }
  const std::vector<TestNotifications::Notice>& noticesAfter(std::size_t count) {
    serveUntil([this, count] { return notifications().notices().size() >= count; });
    return notifications().notices();
  }
  /// Waits until the tray has handled everything that the service and the bus sent before.
  void awaitTray(const std::string& client) {
    notifications().ping(client);
    EXPECT_TRUE(serveUntil([this] { return notifications().pingAnswered(); }));
  }

private:
  std::optional<TestDesktop> m_desktop;
};

TEST_F(TrayOnABusTest, WithoutAPanelIsUnavailable) {
  letEventsPass();
  EXPECT_FALSE(tray().hasPlace());
  EXPECT_EQ(0, watcher().placeChanges);
}

TEST_F(TrayOnABusTest, RegistersWithAPanelStartedLater) {
  startPanel();
  ASSERT_TRUE(serveUntilPlace(true));
  EXPECT_TRUE(serveUntil([this] { return watcher().placeChanges == 1; }));
  ASSERT_THAT(panel().items(), SizeIs(1));
  EXPECT_EQ("org.kde.StatusNotifierItem-" + std::to_string(::getpid()) + "-1", panel().items()[0]);
  EXPECT_EQ("Tallymoor", property<std::string>("Title"));
  EXPECT_EQ("tallymoor", property<std::string>("Id"));
  EXPECT_EQ("ApplicationStatus", property<std::string>("Category"));
  EXPECT_EQ("Active", property<std::string>("Status"));
  EXPECT_FALSE(property<bool>("ItemIsMenu"));
  EXPECT_EQ("Tallymoor", tip());
}

TEST_F(TrayOnABusTest, RegistersWithARunningPanel) {
  startPanel();
  makeTray();
  EXPECT_TRUE(serveUntilPlace(true));
}

TEST_F(TrayOnABusTest, SendsTheIconAsAlphaRedGreenBlue) {
  startPanel();
  ASSERT_TRUE(serveUntilPlace(true));
  const auto pictures = property<std::vector<TestPanel::Pixmap>>("IconPixmap");
  ASSERT_THAT(pictures, SizeIs(1));
  EXPECT_EQ(2, std::get<0>(pictures[0]));
  EXPECT_EQ(1, std::get<1>(pictures[0]));
  EXPECT_THAT(std::get<2>(pictures[0]), ElementsAre(255, 255, 1, 2, 128, 3, 4, 250));
}

TEST_F(TrayOnABusTest, ANewIconIsAnnounced) {
  startPanel();
  ASSERT_TRUE(serveUntilPlace(true));
  const FXColor green = FXRGBA(0, 255, 0, 255);
  const FXIcon icon(&app(), &green, 0, IMAGE_KEEP, 1, 1);
  tray().setIcon(icon);
  EXPECT_TRUE(serveUntil([this] { return !panel().signals().empty(); }));
  EXPECT_THAT(panel().signals(), ElementsAre("NewIcon"));
  EXPECT_THAT(std::get<2>(property<std::vector<TestPanel::Pixmap>>("IconPixmap").at(0)),
              ElementsAre(255, 0, 255, 0));
}

TEST_F(TrayOnABusTest, ANewTipIsAnnounced) {
  startPanel();
  ASSERT_TRUE(serveUntilPlace(true));
  tray().setTip(u"Trading : +1.25% (0.50%)");
  EXPECT_TRUE(serveUntil([this] { return !panel().signals().empty(); }));
  EXPECT_THAT(panel().signals(), ElementsAre("NewToolTip"));
  EXPECT_EQ("Trading : +1.25% (0.50%)", tip());
}

TEST_F(TrayOnABusTest, ATipOfMoreThan64CharactersIsCut) {
  startPanel();
  ASSERT_TRUE(serveUntilPlace(true));
  tray().setTip(String(64, u'a'));
  EXPECT_EQ(std::string(64, 'a'), tip());
  tray().setTip(String(65, u'b'));
  EXPECT_EQ(std::string(64, 'b'), tip());
  tray().setTip(String(63, u'c') + u"\U0001F4C8");
  EXPECT_EQ(std::string(63, 'c'), tip()) << "half a character is no character";
}

TEST_F(TrayOnABusTest, HandlesClicksInTheEventLoop) {
  startPanel();
  ASSERT_TRUE(serveUntilPlace(true));
  panel().click("Activate");
  EXPECT_TRUE(serveUntil([this] { return watcher().clicks.size() == 1; }));
  panel().click("ContextMenu");
  EXPECT_TRUE(serveUntil([this] { return watcher().clicks.size() == 2; }));
  panel().click("SecondaryActivate");
  EXPECT_TRUE(serveUntil([this] { return panel().clicksAnswered() == 3; }));
  letEventsPass();
  EXPECT_THAT(watcher().clicks, ElementsAre("double", "right"));
  EXPECT_FALSE(watcher().clickedUnderTheMutex) << "a popup may open";
}

TEST_F(TrayOnABusTest, RepeatedClicksCountOnce) {
  startPanel();
  ASSERT_TRUE(serveUntilPlace(true));
  panel().click("ContextMenu");
  panel().click("ContextMenu");
  panel().click("Activate");
  // The request follows the clicks through the bus.
  for (int i = 0; i < 3; ++i)
    EXPECT_TRUE(panel().owned(panel().items()[0]));
  EXPECT_TRUE(serveUntil([this] { return panel().clicksAnswered() == 3; }));
  EXPECT_TRUE(serveUntil([this] { return watcher().clicks.size() == 2; }));
  letEventsPass();
  EXPECT_THAT(watcher().clicks, ElementsAre("right", "double"));
}

// ---- The popup of panels that draw it themselves ----

class TrayMenuTest : public TrayOnABusTest {
protected:
  void SetUp() override {
    TrayOnABusTest::SetUp();
    startPanel();
    serveUntilPlace(true);
  }
  std::vector<std::string> menu() {
    panel().readMenu();
    serveUntil([this] { return panel().menu().has_value(); });
    return *panel().menu();
  }
  bool menuChanged() {
    panel().askMenuChanged();
    serveUntil([this] { return panel().menuChanged().has_value(); });
    return *panel().menuChanged();
  }
};

TEST_F(TrayMenuTest, HoldsTheWatchersEntries) {
  EXPECT_EQ("/MenuBar", property<sdbus::ObjectPath>("Menu"));
  EXPECT_THAT(menu(), ElementsAre("About A & B", "-", "Exit"));
  EXPECT_FALSE(menuChanged());
}

TEST_F(TrayMenuTest, HandlesChosenEntriesInTheEventLoop) {
  menu();
  panel().choose("Exit");
  EXPECT_TRUE(serveUntil([this] { return !watcher().clicks.empty(); }));
  EXPECT_THAT(watcher().clicks, ElementsAre("command 9"));
  EXPECT_FALSE(watcher().clickedUnderTheMutex);
}

TEST_F(TrayMenuTest, RejectsEntriesThatWereNotOffered) {
  menu();
  panel().choose("-");
  panel().chooseNumber(8);
  panel().chooseNumber(-1);
  EXPECT_TRUE(serveUntil([this] { return panel().clicksAnswered() == 3; }));
  letEventsPass();
  EXPECT_THAT(watcher().clicks, IsEmpty());
}

TEST_F(TrayMenuTest, AChangeIsAnnouncedOrFoundBeforeThePopupIsShown) {
  menu();
  watcher().menu.push_back({u"Open", 8});
  EXPECT_TRUE(menuChanged());
  EXPECT_THAT(menu(), ElementsAre("About A & B", "-", "Exit", "Open"));
  const unsigned before = panel().menuChanges();
  tray().menuChanged();
  watcher().menu.pop_back();
  tray().menuChanged();
  EXPECT_TRUE(serveUntil([this, before] { return panel().menuChanges() == before + 1; }));
  EXPECT_THAT(menu(), ElementsAre("About A & B", "-", "Exit"));
}

TEST_F(TrayOnABusTest, AWatcherWithoutAPanelIsUnavailable) {
  startPanel(false);
  ASSERT_TRUE(serveUntil([this] { return !panel().items().empty(); }));
  letEventsPass();
  panel().serve();
  letEventsPass();
  EXPECT_FALSE(tray().hasPlace());
  panel().setHost(true);
  EXPECT_TRUE(serveUntilPlace(true));
  panel().setHost(false);
  EXPECT_TRUE(serveUntilPlace(false));
  EXPECT_TRUE(serveUntil([this] { return watcher().placeChanges == 2; }));
}

TEST_F(TrayOnABusTest, SurvivesAReplacedPanel) {
  startPanel();
  ASSERT_TRUE(serveUntilPlace(true));
  stopPanel();
  EXPECT_TRUE(serveUntilPlace(false));
  startPanel();
  EXPECT_TRUE(serveUntilPlace(true));
  EXPECT_EQ("Tallymoor", tip());
}

TEST_F(TrayOnABusTest, RemovesItsItemWhenDestroyed) {
  startPanel();
  ASSERT_TRUE(serveUntilPlace(true));
  const std::string name = panel().items()[0];
  EXPECT_TRUE(panel().owned(name));
  removeTray();
  EXPECT_TRUE(serveUntil([this, &name] { return !panel().owned(name); }));
}

TEST_F(TrayOnABusTest, ReconnectsToALostBus) {
  startPanel();
  ASSERT_TRUE(serveUntilPlace(true));
  stopPanel();
  bus().stop();
  EXPECT_TRUE(runUntil([this] { return !tray().hasPlace(); }));
  tray().setTip(u"set meanwhile");
  bus().start();
  startPanel();
  EXPECT_TRUE(serveUntilPlace(true));
  EXPECT_EQ("set meanwhile", tip());
}

TEST_F(TrayOnABusTest, BalloonsAreNotificationsWithTheLevelAsUrgency) {
  startNotifications({"body"});
  balloon(u"Updates are available.", u"Tallymoor Updates", 0);
  balloon(u"It has fallen.", u"Warning from Tallymoor!", 1);
  balloon(u"It has failed.", u"Tallymoor Updates", 2);
  const auto& notices = noticesAfter(3);
  ASSERT_THAT(notices, SizeIs(3));
  EXPECT_EQ("Tallymoor", notices[0].application);
  EXPECT_EQ("Tallymoor Updates", notices[0].title);
  EXPECT_EQ("Updates are available.", notices[0].text);
  EXPECT_TRUE(notices[0].hasPicture);
  for (int level = 0; level < 3; ++level)
    EXPECT_EQ(level, notices[static_cast<std::size_t>(level)].urgency);
  EXPECT_EQ(1u, notifications().timesAsked());
  letEventsPass();
  EXPECT_THAT(watcher().notShown, IsEmpty());
}

TEST_F(TrayOnABusTest, NamesOfSharesAreSafeFromMarkup) {
  startNotifications({"body", "body-markup"});
  balloon(u"A & B <Holdings> has dropped", u"A & <B>", 1);
  EXPECT_EQ("A &amp; B &lt;Holdings&gt; has dropped", noticesAfter(1).at(0).text);
  EXPECT_EQ("A & <B>", notifications().notices()[0].title) << "a title is plain text";
}

TEST_F(TrayOnABusTest, AServiceWithoutMarkupGetsTheUnescapedText) {
  startNotifications({"body", "actions"});
  balloon(u"A & B <Holdings>", u"title", 1);
  EXPECT_EQ("A & B <Holdings>", noticesAfter(1).at(0).text);
}

TEST_F(TrayOnABusTest, AServiceThatShowsOnlyTitlesGetsTheTextInTheTitle) {
  startNotifications({});
  balloon(u"It has fallen.", u"Warning", 1);
  EXPECT_EQ("Warning: It has fallen.", noticesAfter(1).at(0).title);
}

TEST_F(TrayOnABusTest, TextAndTitleAreCut) {
  startNotifications({"body"});
  balloon(String(256, u'a'), String(64, u'b'), 0);
  EXPECT_EQ(std::string(255, 'a'), noticesAfter(1).at(0).text);
  EXPECT_EQ(std::string(63, 'b'), notifications().notices()[0].title);
}

TEST_F(TrayOnABusTest, ReturnsBalloonsWithoutAService) {
  balloon(u"text", u"title", 0);
  EXPECT_TRUE(serveUntil([this] { return !watcher().notShown.empty(); }));
  EXPECT_THAT(watcher().notShown, ElementsAre(String(u"title|text|0")));
}

TEST_F(TrayOnABusTest, ReturnsRefusedBalloonsUnchanged) {
  startNotifications({"body"});
  notifications().refuse();
  balloon(String(300, u'a'), u"title", 1);
  EXPECT_TRUE(serveUntil([this] { return !watcher().notShown.empty(); }));
  EXPECT_THAT(watcher().notShown, ElementsAre(String(u"title|") + String(300, u'a') + u"|1"));
}

TEST_F(TrayOnABusTest, AsksANewServiceForItsCapabilities) {
  startNotifications({"body", "body-markup"});
  balloon(u"A & B", u"title", 1);
  EXPECT_EQ("A &amp; B", noticesAfter(1).at(0).text);
  const std::string client = notifications().client();
  stopNotifications();
  startNotifications({"body"});
  awaitTray(client); // Informs the tray of the change.
  balloon(u"A & B", u"title", 1);
  EXPECT_EQ("A & B", noticesAfter(1).at(0).text);
}

TEST_F(TrayOnABusTest, ABalloonFromAnotherThreadIsShown) {
  startNotifications({"body"});
  std::thread([this] { balloon(u"from a pass", u"title", 0); }).join();
  EXPECT_EQ("from a pass", noticesAfter(1).at(0).text);
}

TEST_F(TrayOnABusTest, ReturnsPendingBalloonsWhenTheBusIsLost) {
  startNotifications({"body"});
  balloon(u"first", u"title", 0);
  noticesAfter(1);
  awaitTray(notifications().client()); // The first one is answered.
  balloon(u"second", u"title", 0);
  letEventsPass(); // Sent, but the service does not answer.
  stopNotifications();
  bus().stop();
  EXPECT_TRUE(runUntil([this] { return !watcher().notShown.empty(); }));
  EXPECT_THAT(watcher().notShown, ElementsAre(String(u"title|second|0")));
}

TEST_F(TrayOnABusTest, ReturnsPendingBalloonsWhenRemoved) {
  startNotifications({"body"});
  balloon(u"text", u"title", 0);
  letEventsPass();
  removeTray();
  EXPECT_THAT(watcher().notShown, ElementsAre(String(u"title|text|0")));
}

/// A panel and a service on the bus that never answer.
class HungDesktopTest : public TrayOnABusTest {
protected:
  DesktopTray::Options options() const override {
    return {std::chrono::milliseconds(20), std::chrono::milliseconds(5)};
  }
};

TEST_F(HungDesktopTest, AHangingServiceBlocksNothingAndTheBalloonIsReturned) {
  startNotifications({"body"});
  balloon(u"text", u"title", 1);
  EXPECT_TRUE(runUntil([this] { return !watcher().notShown.empty(); }));
  EXPECT_THAT(watcher().notShown, ElementsAre(String(u"title|text|1")));
}

TEST_F(HungDesktopTest, AHangingPanelIsUnavailable) {
  startPanel();
  makeTray();
  balloon(u"text", u"title", 1); // Returns even after the panel's timeout.
  EXPECT_TRUE(runUntil([this] { return !watcher().notShown.empty(); }));
  EXPECT_FALSE(tray().hasPlace());
}

} // namespace
} // namespace Tallymoor
