#include "shell/TrayController.h"
#include "desktop/DesktopTray.h"
#include "foundation/FileName.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "shell/TallymoorWindow.h"
#include "shell/TrayTip.h"
#include "shell/WarningStrip.h"
#include "views/PriceWatch.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"

namespace Tallymoor {

FXDEFMAP(TrayController)
TrayControllerMap[] = {
    FXMAPFUNC(SEL_TIMEOUT, TrayController::ID_HIDE_AFTER_BALLOON, TrayController::onHideAfterBalloon),
    FXMAPFUNC(SEL_TIMEOUT, TrayController::ID_TRAY_GONE, TrayController::onTrayGone),
    FXMAPFUNC(SEL_TIMEOUT, TrayController::ID_TRAY_MENU, TrayController::onTrayMenu),
};

FXIMPLEMENT_ABSTRACT(TrayController, FXObject, TrayControllerMap, ARRAYNUMBER(TrayControllerMap))

namespace {

constexpr FXuint BALLOON_SHOWN_FOR = 3000; ///< milliseconds, before the window goes
constexpr FXuint PANEL_RESTARTS_IN = 5000; ///< milliseconds that a panel may be away
/// Keys hold stock codes of any length, and the settings take a key of 350 bytes after three for one.
constexpr std::size_t BYTES_TO_SPARE = 150;
constexpr FXuint BUTTON_RETRY = 20; ///< milliseconds between looks at the mouse
constexpr FXuint ANY_BUTTON = LEFTBUTTONMASK | MIDDLEBUTTONMASK | RIGHTBUTTONMASK;

} // namespace

TrayController::TrayController(TallymoorWindow& window, const FXIcon& icon)
    : m_window(window), m_app(window.getApp()),
      m_tray(std::make_unique<DesktopTray>(m_app, *this, icon, u"Tallymoor")) {}

TrayController::~TrayController() {
  for (const FXSelector timer : {ID_HIDE_AFTER_BALLOON, ID_TRAY_GONE, ID_TRAY_MENU})
    m_app->removeTimeout(this, timer);
}

void TrayController::followPrices() {
  m_prices = std::make_unique<PriceWatch>(m_app, u"TallymoorWindow::updateTrayTip failed.",
                                          [this](const std::set<String>&) { updateTip(); });
  updateTip();
}

void TrayController::stopFollowing() {
  m_prices.reset();
}

void TrayController::updateTip() {
  if (!m_window.totalCapital())
    return;
  if (const auto tip = trayTip(*m_window.totalCapital(), trayFormat))
    m_tray->setTip(*tip);
}

void TrayController::warnOnce(const String& text, const String& caption, const String& key, int level) {
  Settings& settings = Settings::Instance();
  if (!key.empty()) {
    const String entry = fileNameFor(key, BYTES_TO_SPARE);
    if (settings.readInt(u"Warnings", entry) != 0) {
      m_window.warnings()->follow(caption, text, key, level);
      return;
    }
    settings.writeInt(u"Warnings", entry, 1); // the section goes when the program ends
  }
  warn(text, caption, key, level);
}

void TrayController::warn(const String& text, const String& caption, const String& key, int level) {
  m_tray->showBalloon(text, caption, level);
  // A balloon goes by itself, seen or not: a warning stays in the window, too.
  if (level > 0)
    m_window.warnings()->add(caption, text, level, key);
  else
    m_toldByBalloon[text] = {key};
}

void TrayController::warningOver(const String& key) {
  m_window.warnings()->withdraw(key);
  for (auto& [text, told] : m_toldByBalloon)
    told.over = told.over || (!key.empty() && told.key == key);
}

void TrayController::onBalloonNotShown(const String& text, const String& title, int level) {
  const ToldByBalloon told = m_toldByBalloon[text];
  if (level == 0 && !told.over)
    m_window.warnings()->add(title, text, level, told.key);
}

// The first time the user is told where the window goes, and has a moment to read it. The toolkit's loop goes
// on meanwhile.
void TrayController::minimise() {
  if (!m_tray->hasPlace())
    return; // the window stays in the task bar
  Settings& settings = Settings::Instance();
  if (settings.readInt(u"Gui Settings", u"MinimizeWarn") != 0) {
    hideBehindIcon();
    return;
  }
  warnOnce(u"Tallymoor minimizes to the system tray for your convenience!", u"Tallymoor System Tray Icon",
           u"system tray notification", 0);
  settings.writeInt(u"Gui Settings", u"MinimizeWarn", 1);
  m_app->addTimeout(this, ID_HIDE_AFTER_BALLOON, BALLOON_SHOWN_FOR);
}

long TrayController::onHideAfterBalloon(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onHideAfterBalloon failed.", [this] {
    // Meanwhile the user may have fetched the window back, or the panel may have gone.
    if (m_tray->hasPlace() && (m_window.isMinimized() || m_window.isOffScreen()))
      hideBehindIcon();
  });
}

/// Without the icon nothing would lead back to a hidden window. A panel that only restarts is given time.
void TrayController::onPlaceChanged() {
  guardedHandler(u"TallymoorWindow::onPlaceChanged failed.", [this] {
    if (m_tray->hasPlace())
      m_app->removeTimeout(this, ID_TRAY_GONE);
    else if (!m_window.shown())
      m_app->addTimeout(this, ID_TRAY_GONE, PANEL_RESTARTS_IN);
  });
}

long TrayController::onTrayGone(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onTrayGone failed.", [this] {
    if (m_tray->hasPlace() || m_window.shown() || m_window.isShuttingDown())
      return;
    bringIntoSight();
    m_window.minimize(); // to the task bar
  });
}

void TrayController::hideBehindIcon() {
  m_window.hide();
  m_tray->menuChanged();
}

void TrayController::bringIntoSight() {
  m_app->removeTimeout(this, ID_HIDE_AFTER_BALLOON);
  // Where it is, it would count as minimised at once.
  if (m_window.isOffScreen())
    m_window.place().restore();
  m_window.restore();
  m_window.show();
  m_tray->menuChanged();
}

void TrayController::bringToFront() {
  if (m_window.isShuttingDown())
    return;
  bringIntoSight();
  m_window.raise();
  // An open dialog is what the user has to go on with.
  if (FXWindow* modal = m_app->getModalWindow(); modal && modal->shown())
    modal->raise();
}

long TrayController::restoreWindow() {
  return m_window.handle(this, FXSEL(SEL_COMMAND, TallymoorWindow::ID_RESTORE), nullptr);
}

void TrayController::onDoubleClick() {
  restoreWindow();
}

// What ends the program cancels a dialog by itself; anything else can't be done before it is answered.
void TrayController::onCommand(unsigned identifier) {
  if (identifier != MainWindow::ID_SHUTDOWN && m_window.isBusy())
    restoreWindow();
  else
    m_window.handle(this, FXSEL(SEL_COMMAND, identifier), nullptr);
}

std::vector<SystemTray::MenuEntry> TrayController::menuEntries() const {
  std::vector<SystemTray::MenuEntry> entries{{u"About Tallymoor", TallymoorWindow::ID_ABOUT_TRAY}};
  if (!m_window.shown() || m_window.isMinimized())
    entries.insert(entries.end(), {{}, {u"Open Tallymoor", TallymoorWindow::ID_RESTORE}});
  entries.insert(entries.end(), {{u"Refresh current prices", TallymoorWindow::ID_REFRESH_PRICES},
                                 {},
                                 {u"Exit", MainWindow::ID_SHUTDOWN}});
  return entries;
}

void TrayController::onRightClick() {
  onTrayMenu(this, 0, nullptr);
}

long TrayController::onTrayMenu(FXObject*, FXSelector, void*) {
  if (dynamic_cast<FXPopup*>(m_app->getModalWindow()))
    return 1; // a second click, while the first one's popup is open
  if (m_window.isBusy())
    return restoreWindow();
  return guardedHandler(u"TallymoorWindow::onTrayMenu failed.", [this] {
    FXint x, y;
    FXuint buttons;
    m_window.getRoot()->getCursorPosition(x, y, buttons);
    // While a button is down the mouse is the panel's, and a popup would not hear of a click elsewhere.
    if (buttons & ANY_BUTTON)
      m_app->addTimeout(this, ID_TRAY_MENU, BUTTON_RETRY);
    else
      showMenu(x, y);
  });
}

void TrayController::showMenu(FXint x, FXint y) {
  ContextMenu menu(&m_window, &m_window);
  for (const SystemTray::MenuEntry& entry : menuEntries()) {
    if (entry.isSeparator())
      menu.addSeparator();
    else
      menu.addCommand(entry.text, entry.command);
  }
  menu.run(x, y);
}

} // namespace Tallymoor
