#pragma once
#include <csignal>
#include <spawn.h>
#include <string>
#include <sys/types.h>
#include <vector>

namespace Tallymoor {

/// How a child process is started: with an empty signal mask, the default action for SIGPIPE, in a session of
/// its own and with none of our open files but the three standard ones.
class SpawnSettings {
public:
  SpawnSettings();
  ~SpawnSettings();
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  /// The child reads nothing, and writes its output and its errors to these descriptors.
  void redirect(int output, int errors);
  /// Starts the program of the first word, once. Returns 0 or the error.
  int start(pid_t& child, const std::vector<std::string>& words);

private:
  posix_spawn_file_actions_t m_actions;
  posix_spawnattr_t m_attributes;
};

} // namespace Tallymoor
