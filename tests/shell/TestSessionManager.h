#pragma once
#include <string>
#include <sys/types.h>
#include <vector>

namespace Tallymoor {

/// A real session manager in a separate process, announced by SESSION_MANAGER. Executes commands (see
/// session_manager/main.cpp) and reports the program's actions. Create it after the TestProfile.
class TestSessionManager {
public:
  explicit TestSessionManager(bool refuses = false);
  ~TestSessionManager();
  TestSessionManager(const TestSessionManager&) = delete;
  TestSessionManager& operator=(const TestSessionManager&) = delete;

  // Requests to the program. A log-out is a save request followed, after all answers, by a die request.
  void askToSaveForLogout() { send("save 2 1\n"); }
  void askToSaveCheckpoint() { send("save 0 0\n"); }
  void callLogoutOff() { send("cancelled\n"); }
  void askToDie() { send("die\n"); }
  void askToSaveAndQuit() { send("save 2 1\nquit\n"); }

  /// The reports so far, in order: "registered", "saved", "failed to save", "left", ...; properties as
  /// "property NAME=VALUE".
  const std::vector<std::string>& heard();
  /// Number of reports with this text.
  int heard(const std::string& line);

  /// Stops the manager, so that it does not answer.
  void hang();
  /// Kills the manager, as in a crash.
  void kill();

private:
  void start(bool refuses);
  void send(const std::string& lines);
  void read();

  pid_t m_process = 0;
  int m_input = -1;  ///< Of the manager.
  int m_output = -1; ///< Of the manager.
  std::string m_unfinished;
  std::vector<std::string> m_heard;
};

} // namespace Tallymoor
