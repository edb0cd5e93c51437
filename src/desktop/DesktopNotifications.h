#pragma once
#include "desktop/TrayPicture.h"
#include "foundation/String.h"
#include <chrono>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <sdbus-c++/IConnection.h>
#include <sdbus-c++/IProxy.h>
#include <string>
#include <vector>

namespace Tallymoor {

/// A short message in a corner of the desktop.
struct Balloon {
  String text;
  String title;
  int level; ///< 0 information, 1 warning, 2 error
};

/// The desktop's notification service, as it stands on the session bus (org.freedesktop.Notifications). All
/// calls are asynchronous: a service that is missing, hangs or goes away costs no time, and each balloon that
/// it has not taken is given back.
///
/// GUI thread only.
class DesktopNotifications {
public:
  using NotShown = std::function<void(const Balloon&)>;

  DesktopNotifications(std::chrono::milliseconds answerTimeout, NotShown notShown);
  ~DesktopNotifications();

  void setPicture(const TrayPicture& picture) { m_picture = picture; }
  /// Throws sdbus::Error. The connection outlives what stands on it: disconnect before it goes.
  void connect(sdbus::IConnection& connection);
  /// Balloons that are not answered for are given back.
  void disconnect();
  void show(const Balloon& balloon);

private:
  /// What the service that runs now can do with a text.
  struct Abilities {
    bool body = false;
    bool markup = false;
  };
  using Sent = std::list<Balloon>::iterator;

  void askAbilities();
  void abilitiesTold(const std::vector<std::string>& names);
  void sendWaiting();
  void send(const Balloon& balloon);
  void answered(Sent balloon, bool shown);
  void giveBackWaiting();

  const std::chrono::milliseconds m_answerTimeout;
  const NotShown m_notShown;
  TrayPicture m_picture;
  std::unique_ptr<sdbus::IProxy> m_service;
  sdbus::Slot m_ownerMatch;
  std::optional<Abilities> m_abilities; ///< unknown until the service has told them
  bool m_asking = false;
  std::deque<Balloon> m_waiting; ///< for the abilities
  std::list<Balloon> m_sent;     ///< for the service's answer
};

} // namespace Tallymoor
