#include "foundation/SpawnSettings.h"
#include <fcntl.h>
#include <unistd.h>

namespace Tallymoor {

SpawnSettings::SpawnSettings() : m_actions(), m_attributes() {
  posix_spawn_file_actions_init(&m_actions);
  posix_spawnattr_init(&m_attributes);
  sigset_t signals;
  sigemptyset(&signals);
  posix_spawnattr_setsigmask(&m_attributes, &signals);
  sigaddset(&signals, SIGPIPE);
  posix_spawnattr_setsigdefault(&m_attributes, &signals);
  posix_spawnattr_setflags(&m_attributes,
                           POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
}

SpawnSettings::~SpawnSettings() {
  posix_spawn_file_actions_destroy(&m_actions);
  posix_spawnattr_destroy(&m_attributes);
}

void SpawnSettings::redirect(int output, int errors) {
  posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&m_actions, errors, STDERR_FILENO);
}

int SpawnSettings::start(pid_t& child, const std::vector<std::string>& words) {
  posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (const std::string& word : words)
    argv.push_back(const_cast<char*>(word.c_str()));
  argv.push_back(nullptr);
  return ::posix_spawnp(&child, argv.front(), &m_actions, &m_attributes, argv.data(), environ);
}

} // namespace Tallymoor
