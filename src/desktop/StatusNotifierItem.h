#pragma once
#include "desktop/TrayPicture.h"
#include "foundation/String.h"
#include <chrono>
#include <functional>
#include <memory>
#include <sdbus-c++/IConnection.h>
#include <sdbus-c++/IObject.h>
#include <sdbus-c++/IProxy.h>
#include <string>

namespace Tallymoor {

/// The program's icon as the desktop's panels see it: a StatusNotifierItem on the session bus. It is handed
/// to the watcher of such items (org.kde.StatusNotifierWatcher), whenever there is one; a panel that shows
/// them is that watcher's host.
///
/// GUI thread only.
class StatusNotifierItem {
public:
  /// Called in the middle of a message from the bus: note it, and return.
  struct Hooks {
    std::function<void()> activated;    ///< clicked
    std::function<void()> menuWanted;   ///< clicked with the right button
    std::function<void()> shownChanged; ///< see shown
  };

  StatusNotifierItem(std::chrono::milliseconds answerTimeout, Hooks hooks);
  ~StatusNotifierItem();

  void setPicture(const TrayPicture& picture);
  void setTip(const String& tip);
  /// Throws sdbus::Error. The connection outlives what stands on it: disconnect before it goes.
  void connect(sdbus::IConnection& connection);
  void disconnect();
  /// True while a watcher has taken the item and a panel shows its items.
  bool shown() const { return m_registered && m_hostThere; }

private:
  void putOnBus(sdbus::IConnection& connection);
  void watchForWatcher(sdbus::IConnection& connection);
  void watcherChanged(bool there);
  void registerWithWatcher();
  void askForHost();
  void setState(bool registered, bool hostThere);
  void announce(const std::string& signal);

  const std::chrono::milliseconds m_answerTimeout;
  const Hooks m_hooks;
  TrayPicture m_picture;
  std::string m_tip;
  std::string m_busName;
  std::unique_ptr<sdbus::IObject> m_item;
  std::unique_ptr<sdbus::IProxy> m_watcher;
  sdbus::Slot m_ownerMatch;
  bool m_registered = false;
  bool m_hostThere = false;
};

} // namespace Tallymoor
