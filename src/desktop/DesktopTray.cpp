#include "desktop/DesktopTray.h"
#include "foundation/FirstUnits.h"
#include "widgets/HandlerScope.h"
#include <algorithm>

namespace Tallymoor {

DesktopTray::DesktopTray(FXApp* app, Watcher& watcher, const FXIcon& icon, const String& tip)
    : DesktopTray(app, watcher, icon, tip, Options()) {}

DesktopTray::DesktopTray(FXApp* app, Watcher& watcher, const FXIcon& icon, const String& tip,
                         const Options& options)
    : m_watcher(watcher), m_wakeUp(app, [this] { tell(); }), m_balloonWakeUp(app, [this] { showWaiting(); }),
      m_item(options.answerTimeout,
             {[this] { tellLater({Event::ACTIVATED}); }, [this] { tellLater({Event::MENU_WANTED}); },
              [this] { tellLater({Event::PLACE_CHANGED}); }}),
      m_menu({[this] { return m_watcher.menuEntries(); },
              [this](unsigned command) {
                tellLater({Event::COMMAND, command});
              }}),
      m_notifications(options.answerTimeout,
                      [this](const Balloon& balloon) {
                        m_watcher.onBalloonNotShown(balloon.text, balloon.title, balloon.level);
                      }),
      m_bus(app, options.reconnectAfter,
            {[this](sdbus::IConnection& connection) {
               m_menu.connect(connection);
               m_item.connect(connection);
               m_notifications.connect(connection);
             },
             [this] {
               m_notifications.disconnect();
               m_item.disconnect();
               m_menu.disconnect();
             }}) {
  setIcon(icon);
  setTip(tip);
  m_bus.connect();
}

DesktopTray::~DesktopTray() = default;

void DesktopTray::setIcon(const FXIcon& icon) {
  const TrayPicture picture = TrayPicture::of(icon);
  m_item.setPicture(picture);
  m_notifications.setPicture(picture);
  m_bus.watch();
}

void DesktopTray::setTip(const String& tip) {
  m_item.setTip(firstUnits(tip, TIP_LENGTH));
  m_bus.watch();
}

void DesktopTray::menuChanged() {
  m_menu.tellChange();
  m_bus.watch();
}

void DesktopTray::showBalloon(const String& text, const String& title, int level) {
  m_balloons.push_back({text, title, level});
  m_balloonWakeUp.wake();
}

void DesktopTray::showWaiting() {
  guardedHandler(u"DesktopTray::showBalloon failed.", [this] {
    while (!m_balloons.empty()) {
      const Balloon next = m_balloons.front();
      m_balloons.pop_front();
      m_notifications.show(next);
    }
    m_bus.watch();
  });
}

void DesktopTray::tellLater(const Event& event) {
  if (std::find(m_events.begin(), m_events.end(), event) == m_events.end())
    m_events.push_back(event);
  m_wakeUp.wake();
}

/// One at a time: the watcher may delete this tray, or open a loop of its own.
void DesktopTray::tell() {
  if (m_events.empty())
    return;
  const Event event = m_events.front();
  m_events.pop_front();
  if (!m_events.empty())
    m_wakeUp.wake();
  tell(event);
}

void DesktopTray::tell(const Event& event) {
  switch (event.kind) {
  case Event::ACTIVATED:
    return m_watcher.onDoubleClick();
  case Event::MENU_WANTED:
    return m_watcher.onRightClick();
  case Event::COMMAND:
    return m_watcher.onCommand(event.command);
  case Event::PLACE_CHANGED:
    return m_watcher.onPlaceChanged();
  }
}

} // namespace Tallymoor
