#include "foundation/FolderLock.h"
#include <fcntl.h>
#include <sys/file.h>

namespace Tallymoor {

namespace {

constexpr const char* LOCK_FILE = "/running.lock";

} // namespace

FolderLock FolderLock::onFileIn(const String& folder) {
  const std::string path = folder.toUTF8() + LOCK_FILE;
  const auto open = [&path](int flags) {
    return uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, 0600); });
  };
  const int file = open(O_RDWR | O_CREAT);
  return FolderLock(file >= 0 ? file : open(O_RDONLY));
}

FolderLock FolderLock::on(const String& folder) {
  const std::string path = folder.toUTF8();
  return FolderLock(
      uninterrupted([&path] { return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
}

FolderLock::FolderLock(int file) : m_file(file) {
  const int locked = uninterrupted([file] { return ::flock(file, LOCK_EX | LOCK_NB); });
  m_heldByAnother = locked != 0 && errno == EWOULDBLOCK;
}

} // namespace Tallymoor
