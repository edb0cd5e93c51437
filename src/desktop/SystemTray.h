#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <vector>

namespace FX {
class FXIcon;
}

namespace Tallymoor {

/// The program's place in the desktop's notification area: an icon with a tip, and balloons. DesktopTray is
/// the one for this desktop.
///
/// GUI thread only, except where an operation says otherwise.
class SystemTray {
public:
  /// A line of the icon's popup: a command, or a separator, which has no text.
  struct MenuEntry {
    String text;
    unsigned command = 0; ///< its identifier
    bool isSeparator() const { return text.empty(); }
    bool operator==(const MenuEntry&) const = default;
  };

  /// Hears what happens to the icon. Clicks come straight from the toolkit's loop, so a popup may be opened.
  class Watcher {
  public:
    virtual ~Watcher();
    virtual void onLeftClick() = 0;
    virtual void onRightClick() = 0;
    virtual void onDoubleClick() = 0;
    virtual void onMouseMove() = 0;
    /// The identifier of a command that was chosen in a popup that the desktop itself shows.
    virtual void onCommand(unsigned identifier) = 0;
    /// What that popup holds at this moment.
    virtual std::vector<MenuEntry> menuEntries() const = 0;
    /// The icon has gained or lost its place: see hasPlace.
    virtual void onPlaceChanged() = 0;
    /// Nobody on the desktop has shown this balloon. Under the big mutex.
    virtual void onBalloonNotShown(const String& text, const String& title, int level) = 0;
  };

  /// What fits a tip, a balloon and its title; the rest is cut.
  static constexpr std::size_t TIP_LENGTH = 64, BALLOON_LENGTH = 255, TITLE_LENGTH = 63;

  virtual ~SystemTray();
  /// Takes a copy of the picture; the icon must keep its pixels (IMAGE_KEEP).
  virtual void setIcon(const FX::FXIcon& icon) = 0;
  virtual void setTip(const String& tip) = 0;
  virtual Watcher& watcher() const = 0;
  /// The watcher has other menu entries than before.
  virtual void menuChanged() = 0;
  /// Level 0 is information, 1 warning, 2 error. Never waits for the desktop. On any thread, under the big
  /// mutex.
  virtual void showBalloon(const String& text, const String& title, int level) = 0;
  /// True while the user can see the icon. Only then may a window hide behind it.
  virtual bool hasPlace() const = 0;
};

} // namespace Tallymoor
