#include "foundation/ProgramStart.h"
#include "foundation/Thread.h"
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tallymoor {

namespace {

/// Gives a child process an empty signal mask, the default action for SIGPIPE and none of our open files.
class SpawnSettings {
public:
  SpawnSettings() : actions(), attributes() {
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigaddset(&signals, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
};

/// Waits for a child on a thread of its own, so that it doesn't remain as a zombie. Deletes itself at its
/// end.
class Reaper : public Thread {
public:
  explicit Reaper(pid_t child) : Thread(0, true, 0), m_child(child) {}

protected:
  void threadFunction() override {
    int status = 0;
    while (::waitpid(m_child, &status, 0) < 0 && errno == EINTR) {
    }
  }

private:
  const pid_t m_child;
};

void reapLater(pid_t child) {
  auto reaper = std::make_unique<Reaper>(child);
  reaper->start();
  static_cast<void>(reaper.release()); // it deletes itself
}

bool onlyOwnersWrite(const struct stat& info) {
  const bool known = info.st_uid == ::geteuid() || info.st_uid == 0;
  return known && (info.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

} // namespace

bool startProgram(const std::string& program, const std::vector<std::string>& arguments) {
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments)
    argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  const SpawnSettings settings;
  pid_t child = 0;
  if (::posix_spawnp(&child, program.c_str(), &settings.actions, &settings.attributes, argv.data(),
                     environ) != 0)
    return false;
  reapLater(child);
  return true;
}

bool isTrustedProgram(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  struct stat file {};
  struct stat parent {};
  return ::stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode) && ::stat(folder.c_str(), &parent) == 0 &&
         onlyOwnersWrite(file) && onlyOwnersWrite(parent);
}

} // namespace Tallymoor
