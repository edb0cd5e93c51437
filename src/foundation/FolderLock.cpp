#include "foundation/FolderLock.h"
#include <algorithm>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace Tallymoor {

namespace {

constexpr const char* LOCK_FILE = "/running.lock";
constexpr std::size_t LONGEST_HOLDER = 300;

String thisProcess() {
  char host[LONGEST_HOLDER / 2] = {}; // a name that is cut may lack its end
  if (::gethostname(host, sizeof host - 1) != 0)
    host[0] = '\0';
  return u"process " + String::fromLong(::getpid()) + u" on " + String(host);
}

/// On a full disk the file stays empty, and the lock holds all the same.
void writeHolder(int file, const String& holder) {
  const std::string text = holder.toUTF8();
  if (uninterrupted([file] { return ::ftruncate(file, 0); }) == 0)
    (void)uninterrupted([&] { return ::pwrite(file, text.data(), text.size(), 0); });
}

/// Another program may have written anything.
String readHolder(int file) {
  std::string text(LONGEST_HOLDER, '\0');
  const ssize_t length = uninterrupted([&] { return ::pread(file, text.data(), text.size(), 0); });
  text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
  return isPlain && text.starts_with("process ") ? String::fromUTF8(text) : String();
}

} // namespace

FolderLock FolderLock::onFileIn(const String& folder) {
  const std::string path = folder.toUTF8() + LOCK_FILE;
  const auto open = [&path](int flags) {
    return uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, 0600); });
  };
  const int file = open(O_RDWR | O_CREAT);
  FolderLock lock(file >= 0 ? file : open(O_RDONLY));
  if (lock.isHeldByAnother()) {
    lock.m_holder = readHolder(lock.m_file.get());
    return lock;
  }
  lock.m_holder = thisProcess();
  writeHolder(lock.m_file.get(), lock.m_holder);
  return lock;
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
