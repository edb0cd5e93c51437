#pragma once
#include "support/desktop/TestBus.h"
#include "support/desktop/TestPanel.h"
#include <optional>

namespace Tallymoor {

/// A desktop session: a bus with a panel and a notification service that a test starts and stops.
class TestDesktop {
public:
  explicit TestDesktop(const std::string& folder) : m_bus(folder) {}

  TestBus& bus() { return m_bus; }
  void startPanel(bool hostThere = true) { m_panel.emplace(m_bus.address(), hostThere); }
  void stopPanel() { m_panel.reset(); }
  TestPanel& panel() { return *m_panel; }
  void startNotifications(const std::vector<std::string>& abilities) {
    m_notifications.emplace(m_bus.address(), abilities);
  }
  void stopNotifications() { m_notifications.reset(); }
  TestNotifications& notifications() { return *m_notifications; }

  /// Lets the panel and the service handle their pending messages.
  void serve() {
    if (m_panel)
      m_panel->serve();
    if (m_notifications)
      m_notifications->serve();
  }

private:
  TestBus m_bus;
  std::optional<TestPanel> m_panel;
  std::optional<TestNotifications> m_notifications;
};

} // namespace Tallymoor
