#pragma once
#include <string>
#include <sys/types.h>
#include <vector>

namespace Tallymoor {

/// A real session manager in a process of its own, which this process finds by SESSION_MANAGER. It does what
/// it is told to (see session_manager/main.cpp) and tells what the program did. Make it after the
/// TestProfile.
class TestSessionManager {
public:
  explicit TestSessionManager(bool refuses = false);
  ~TestSessionManager();
  TestSessionManager(const TestSessionManager&) = delete;
  TestSessionManager& operator=(const TestSessionManager&) = delete;

  // What it sends. A log-out is a request to save and, when all have answered, one to die.
  void askToSaveForLogout() { send("save 2 1\n"); }
  void askToSaveCheckpoint() { send("save 0 0\n"); }
  void callLogoutOff() { send("cancelled\n"); }
  void askToDie() { send("die\n"); }
  void askToSaveAndQuit() { send("save 2 1\nquit\n"); }

  /// What it has heard so far, in order: "registered", "saved", "failed to save", "left", ...; properties as
  /// "property NAME=VALUE".
  const std::vector<std::string>& heard();
  /// How often it has heard this.
  int heard(const std::string& line);

  /// It no longer answers.
  void hang();
  /// It ends without a word, as when it breaks down.
  void kill();

private:
  void start(bool refuses);
  void send(const std::string& lines);
  void read();

  pid_t m_process = 0;
  int m_input = -1;  ///< of the manager
  int m_output = -1; ///< of the manager
  std::string m_unfinished;
  std::vector<std::string> m_heard;
};

} // namespace Tallymoor
