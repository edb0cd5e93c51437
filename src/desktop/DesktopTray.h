#pragma once
#include "desktop/DesktopNotifications.h"
#include "desktop/SessionBus.h"
#include "desktop/StatusNotifierItem.h"
#include "desktop/SystemTray.h"
#include "desktop/TrayMenu.h"
#include "widgets/GuiWakeUp.h"
#include <chrono>
#include <deque>

namespace Tallymoor {

/// The tray of the Linux desktops: the icon is a StatusNotifierItem, balloons are desktop notifications, both
/// on the session bus. Panels tell one kind of click that opens something: it comes as onDoubleClick. The
/// right button either comes as onRightClick or, from panels that show the popup themselves, as the onCommand
/// of what was chosen. The other clicks of the watcher don't come at all.
///
/// Without a bus, a panel or a notification service the program goes on, and each may come and go at any
/// time.
class DesktopTray : public SystemTray {
public:
  struct Options {
    std::chrono::milliseconds answerTimeout = std::chrono::seconds(10);  ///< for panel and service
    std::chrono::milliseconds reconnectAfter = std::chrono::seconds(30); ///< to a bus that is not there
  };

  /// The watcher outlives the tray. Under the big mutex, as the destructor.
  DesktopTray(FX::FXApp* app, Watcher& watcher, const FX::FXIcon& icon, const String& tip);
  DesktopTray(FX::FXApp* app, Watcher& watcher, const FX::FXIcon& icon, const String& tip,
              const Options& options);
  ~DesktopTray() override;

  void setIcon(const FX::FXIcon& icon) override;
  void setTip(const String& tip) override;
  Watcher& watcher() const override { return m_watcher; }
  void menuChanged() override;
  void showBalloon(const String& text, const String& title, int level) override;
  bool hasPlace() const override { return m_item.shown(); }

private:
  struct Event {
    enum Kind { ACTIVATED, MENU_WANTED, COMMAND, PLACE_CHANGED } kind;
    unsigned command = 0;
    bool operator==(const Event&) const = default;
  };

  /// To be told from the toolkit's loop, once.
  void tellLater(const Event& event);
  void tell();
  void tell(const Event& event);
  void showWaiting();

  Watcher& m_watcher;
  GuiWakeUp m_wakeUp;
  GuiWakeUp m_balloonWakeUp;
  std::deque<Event> m_events;     ///< that the watcher has not heard of yet
  std::deque<Balloon> m_balloons; ///< on their way to the GUI thread; guarded by the big mutex
  StatusNotifierItem m_item;
  TrayMenu m_menu;
  DesktopNotifications m_notifications;
  SessionBus m_bus; ///< goes first
};

} // namespace Tallymoor
