#pragma once
#include <string>
#include <sys/types.h>

namespace Tallymoor {

/// A private session bus (dbus-daemon) in a scratch folder, set in the environment. It activates no services.
/// Create it after the TestProfile.
class TestBus {
public:
  explicit TestBus(const std::string& folder);
  ~TestBus();
  TestBus(const TestBus&) = delete;
  TestBus& operator=(const TestBus&) = delete;

  const std::string& address() const { return m_address; }
  /// Ends the bus, as after a crash of the desktop.
  void stop();
  /// Starts a new bus at the same address.
  void start();

private:
  std::string m_configuration;
  std::string m_log;
  std::string m_socket;
  std::string m_address;
  pid_t m_daemon = 0;
};

} // namespace Tallymoor
