#pragma once
#include "foundation/Settings.h"
#include "shell/AdvertThread.h"
#include "shell/SelfSaving.h"
#include "shell/TallymoorWindow.h"
#include "shell/ViewDateRow.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/windows/BoxKind.h"
#include "support/windows/WindowTest.h"
#include "updates/UpdateSettings.h"
#include "widgets/CalendarDialog.h"
#include "widgets/FXCalendar.h"
#include "xml/CountryOfResidence.h"
#include <optional>

namespace Tallymoor {

/// The real main window with its own profile and a simulated exchange behind a web server. The country is set
/// unless a test clears it before the window is created.
class ShellTest : public WindowTest {
protected:
  ShellTest() {
    m_market.emplace();
    m_gateway.emplace();
    Settings::Instance().writeString(u"Config", u"Country", u"Australia");
    UpdateSettings::setCurrent(noUpdates());
    m_adverts.wanted = false;
    AdvertSettings::setForTest(&m_adverts);
    SelfSaving::setDelays(std::nullopt);
    writeCountries();
    CountryOfResidence::destroyInstance(); // Left by the previous test.
  }

  bool awaitBackgroundWork() override { return GatewayScope::awaitHistory(); }
  void SetUp() override {
    WindowTest::SetUp();
    awaitReady(tallymoor());
  }
  /// Until the portfolios are up to date.
  void awaitReady(const TallymoorWindow& window) {
    ASSERT_TRUE(runUntil([&window] { return window.isReady(); }));
    letEventsPass();
  }

  void TearDown() override {
    deleteWindow();
    SelfSaving::setDelays(SavingDelays());
    AdvertSettings::setForTest(nullptr);
    m_gateway.reset();
    UpdateSettings::setCurrent(UpdateSettings::ofThisBuild());
    WindowTest::TearDown();
  }

  std::unique_ptr<MainWindow> makeWindow(FXApp* app) override {
    m_icons.emplace(app);
    awaitWizard();
    return makeTallymoor(app, *m_icons);
  }
  virtual std::unique_ptr<TallymoorWindow> makeTallymoor(FXApp* app, WindowIcons& icons) {
    return std::make_unique<TallymoorWindow>(app, icons);
  }

  /// Call it before creating another window whose start opens the wizard.
  void awaitWizard() {
    if (opensWizard())
      whenModal("Tallymoor - Getting Started", [this](FXWindow& wizard) { useWizard(wizard); });
  }
  /// True if the start opens the wizard for a first portfolio.
  virtual bool opensWizard() { return !TestProfile::fileExists(recordsPath()); }
  /// Handles that wizard.
  virtual void useWizard(FXWindow& wizard) { press(wizard, "Cancel"); }

  TallymoorWindow& tallymoor() { return dynamic_cast<TallymoorWindow&>(mainWindow()); }
  MarketFixture& market() { return *m_market; }
  GatewayScope& gateway() { return *m_gateway; }
  String recordsPath() { return profile().dataFolder() + u"Portfolios.xml"; }
  void command(FXuint id) { tallymoor().handle(&app(), FXSEL(SEL_COMMAND, id), nullptr); }

  /// Finds a menu entry by its text without the mnemonic. Null if missing.
  FXMenuCommand* menuEntry(const std::string& text) {
    for (FXWindow* child = tallymoor().getRoot()->getFirst(); child; child = child->getNext())
      if (auto* pane = dynamic_cast<FXMenuPane*>(child))
        for (FXMenuCommand* entry : findAll<FXMenuCommand>(*pane))
          if (text == entry->getText().text())
            return entry;
    return nullptr;
  }

  /// Sends the command that ends the session.
  void leave() { command(MainWindow::ID_SHUTDOWN); }

  /// Like answer, and checks the kind of the box.
  void answerKind(BoxKind kind, const std::string& text, const std::string& label) {
    whenModal(text, [this, kind, text, label](FXWindow& box) {
      EXPECT_EQ(kind, boxKind(box)) << text;
      EXPECT_TRUE(shows(box, text));
      press(box, label);
    });
  }
  /// Clicks the view date field and selects a day in the calendar.
  void pickViewDate(const Date& date) {
    whenModal("Choose the date", [this, date](FXWindow& dialog) {
      dynamic_cast<CalendarDialog&>(dialog).calendar()->setDate(date);
      press(dialog, "OK");
    });
    click(*tallymoor().viewDateRow()->field());
  }
  /// Presses and releases the left mouse button.
  void click(FXWindow& window) {
    for (const FXuint type : {SEL_LEFTBUTTONPRESS, SEL_LEFTBUTTONRELEASE}) {
      FXEvent event{};
      event.type = type;
      window.handle(&app(), FXSEL(type, 0), &event);
    }
  }

  /// Settings of the window; no adverts unless a test sets some.
  AdvertSettings m_adverts;

private:
  /// No update check unless a test sets one.
  static UpdateSettings noUpdates() {
    UpdateSettings settings;
    settings.queryBase = u"http://127.0.0.1:1/?";
    settings.startDelay = settings.period;
    return settings;
  }
  void writeCountries() {
    TestProfile::writeFile(
        profile().configFolder() + u"CountryConfig.xml",
        "<CountryOptions version=\"1\"><CountryOption Name=\"Australia\" FinYearStart=\"1/7/2000\"/>"
        "<CountryOption Name=\"United States\" FinYearStart=\"1/1/2000\"/></CountryOptions>");
  }

  std::optional<MarketFixture> m_market;
  std::optional<GatewayScope> m_gateway;
  std::optional<WindowIcons> m_icons;
};

} // namespace Tallymoor
