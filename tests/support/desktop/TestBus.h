#pragma once
#include <string>
#include <sys/types.h>

namespace Tallymoor {

/// A session bus of a test's own, that of dbus-daemon, in a scratch folder: what the process looks for
/// there, it finds here. No service is started on it by itself. Make it after the TestProfile.
class TestBus {
public:
  explicit TestBus(const std::string& folder);
  ~TestBus();
  TestBus(const TestBus&) = delete;
  TestBus& operator=(const TestBus&) = delete;

  const std::string& address() const { return m_address; }
  /// The bus ends, as when the desktop breaks down.
  void stop();
  /// Another one, at the same address.
  void start();

private:
  std::string m_configuration;
  std::string m_log;
  std::string m_socket;
  std::string m_address;
  pid_t m_daemon = 0;
};

} // namespace Tallymoor
