// The window's side of the system tray: where it goes when it is minimised, and how it comes back.
#include "desktop/DesktopTray.h"
#include "foundation/FileReplacement.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "shell/TallymoorWindow.h"
#include "shell/TrayTip.h"
#include "shell/WarningStrip.h"
#include "shell/WindowCommands.h"
#include "views/PriceWatch.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"

namespace Tallymoor {

namespace {

constexpr FXuint BALLOON_SHOWN_FOR = 3000; ///< milliseconds, before the window goes
constexpr FXuint PANEL_RESTARTS_IN = 5000; ///< milliseconds that a panel may be away
/// Keys hold stock codes of any length, and the settings take a key of 350 bytes after three for one.
constexpr std::size_t BYTES_TO_SPARE = 150;
constexpr FXuint BUTTON_RETRY = 20; ///< milliseconds between looks at the mouse
constexpr FXuint ANY_BUTTON = LEFTBUTTONMASK | MIDDLEBUTTONMASK | RIGHTBUTTONMASK;

} // namespace

void TallymoorWindow::buildTray() {
  m_tray = std::make_unique<DesktopTray>(getApp(), *this, *m_icons.tray, u"Tallymoor");
}

/// The prices are followed once there is something that they change.
void TallymoorWindow::followPricesInTray() {
  m_trayPrices = std::make_unique<PriceWatch>(getApp(), u"TallymoorWindow::updateTrayTip failed.",
                                              [this](const std::set<String>&) { updateTrayTip(); });
  updateTrayTip();
}

void TallymoorWindow::updateTrayTip() {
  if (!m_totalCapital)
    return;
  if (const auto tip = trayTip(*m_totalCapital, trayFormat))
    m_tray->setTip(*tip);
}

void TallymoorWindow::warnOnce(const String& text, const String& caption, const String& key, int level) {
  Settings& settings = Settings::Instance();
  if (!key.empty()) {
    const String entry = fileNameFor(key, BYTES_TO_SPARE);
    if (settings.readInt(u"Warnings", entry) != 0) {
      m_warnings->follow(caption, text, key, level);
      return;
    }
    settings.writeInt(u"Warnings", entry, 1); // the section goes when the program ends
  }
  warn(text, caption, key, level);
}

void TallymoorWindow::warn(const String& text, const String& caption, const String& key, int level) {
  m_tray->showBalloon(text, caption, level);
  // A balloon goes by itself, seen or not: a warning stays in the window, too.
  if (level > 0)
    m_warnings->add(caption, text, level, key);
  else
    m_toldByBalloon[text] = {key};
}

void TallymoorWindow::warningOver(const String& key) {
  m_warnings->withdraw(key);
  for (auto& [text, told] : m_toldByBalloon)
    told.over = told.over || (!key.empty() && told.key == key);
}

void TallymoorWindow::onBalloonNotShown(const String& text, const String& title, int level) {
  const ToldByBalloon told = m_toldByBalloon[text];
  if (level == 0 && !told.over)
    m_warnings->add(title, text, level, told.key);
}

bool TallymoorWindow::isOffScreen() const {
  const FXPoint place = placeOnScreen();
  return place.x < 0 && place.y < 0;
}

// The first time the user is told where the window goes, and has a moment to read it. The toolkit's loop goes
// on meanwhile.
void TallymoorWindow::minimiseToTray() {
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
  getApp()->addTimeout(this, ID_HIDE_AFTER_BALLOON, BALLOON_SHOWN_FOR);
}

long TallymoorWindow::onHideAfterBalloon(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onHideAfterBalloon failed.", [this] {
    // Meanwhile the user may have fetched the window back, or the panel may have gone.
    if (m_tray->hasPlace() && (isMinimized() || isOffScreen()))
      hideBehindIcon();
  });
}

/// Without the icon nothing would lead back to a hidden window. A panel that only starts anew is given time.
void TallymoorWindow::onPlaceChanged() {
  guardedHandler(u"TallymoorWindow::onPlaceChanged failed.", [this] {
    if (m_tray->hasPlace())
      getApp()->removeTimeout(this, ID_TRAY_GONE);
    else if (!shown())
      getApp()->addTimeout(this, ID_TRAY_GONE, PANEL_RESTARTS_IN);
  });
}

long TallymoorWindow::onTrayGone(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onTrayGone failed.", [this] {
    if (m_tray->hasPlace() || shown() || isShuttingDown())
      return;
    bringIntoSight();
    minimize(); // to the task bar
  });
}

void TallymoorWindow::hideBehindIcon() {
  hide();
  m_tray->menuChanged();
}

void TallymoorWindow::bringIntoSight() {
  getApp()->removeTimeout(this, ID_HIDE_AFTER_BALLOON);
  // Where it is, it would count as minimised at once.
  if (isOffScreen())
    restorePlace();
  restore();
  show();
  m_tray->menuChanged();
}

void TallymoorWindow::bringToFront() {
  if (isShuttingDown())
    return;
  bringIntoSight();
  raise();
  // An open dialog is what the user has to go on with.
  if (FXWindow* modal = getApp()->getModalWindow(); modal && modal->shown())
    modal->raise();
}

void TallymoorWindow::onLeftClick() {}

void TallymoorWindow::onDoubleClick() {
  m_commands->table().run(ID_RESTORE);
}

void TallymoorWindow::onMouseMove() {}

// What ends the program cancels a dialog by itself; anything else can't be done before it is answered.
void TallymoorWindow::onCommand(unsigned identifier) {
  if (identifier != ID_SHUTDOWN && busyWithAnotherWindow())
    m_commands->table().run(ID_RESTORE);
  else
    handle(this, FXSEL(SEL_COMMAND, identifier), nullptr);
}

std::vector<SystemTray::MenuEntry> TallymoorWindow::menuEntries() const {
  std::vector<SystemTray::MenuEntry> entries{{u"About Tallymoor", ID_ABOUT_TRAY}};
  if (!shown() || isMinimized())
    entries.insert(entries.end(), {{}, {u"Open Tallymoor", ID_RESTORE}});
  entries.insert(entries.end(), {{u"Refresh current prices", ID_REFRESH_PRICES}, {}, {u"Exit", ID_SHUTDOWN}});
  return entries;
}

/// A dialog or popup is open, or a handler lets events pass.
bool TallymoorWindow::busyWithAnotherWindow() const {
  return bigMutex().heldByThisThread() || getApp()->getModality() != MODAL_FOR_NONE;
}

void TallymoorWindow::onRightClick() {
  onTrayMenu(this, 0, nullptr);
}

long TallymoorWindow::onTrayMenu(FXObject*, FXSelector, void*) {
  if (dynamic_cast<FXPopup*>(getApp()->getModalWindow()))
    return 1; // a second click, while the first one's popup is open
  if (busyWithAnotherWindow())
    return m_commands->table().run(ID_RESTORE);
  return guardedHandler(u"TallymoorWindow::onTrayMenu failed.", [this] {
    FXint x, y;
    FXuint buttons;
    getRoot()->getCursorPosition(x, y, buttons);
    // While a button is down the mouse is the panel's, and a popup would not hear of a click elsewhere.
    if (buttons & ANY_BUTTON)
      getApp()->addTimeout(this, ID_TRAY_MENU, BUTTON_RETRY);
    else
      showTrayMenu(x, y);
  });
}

void TallymoorWindow::showTrayMenu(FXint x, FXint y) {
  ContextMenu menu(this, this);
  for (const SystemTray::MenuEntry& entry : menuEntries()) {
    if (entry.isSeparator())
      menu.addSeparator();
    else
      menu.addCommand(entry.text, entry.command);
  }
  menu.run(x, y);
}

} // namespace Tallymoor
