#include "foundation/ProgramStart.h"
#include "foundation/SpawnSettings.h"
#include "foundation/Thread.h"
#include <cerrno>
#include <memory>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tallymoor {

namespace {

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
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  pid_t child = 0;
  if (SpawnSettings().start(child, words) != 0)
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
