#pragma once
#include "foundation/String.h"
#include <sys/stat.h>

namespace Tallymoor {

/// The permission bits of a file or folder; 0 if missing.
inline unsigned modeOf(const String& path) {
  struct stat info {};
  return ::stat(path.toUTF8().c_str(), &info) == 0 ? info.st_mode & 07777u : 0u;
}

/// Sets the umask to 0 for a scope, so that new files are open to everybody unless restricted.
class NoUmask {
public:
  NoUmask() : m_before(::umask(0)) {}
  ~NoUmask() { ::umask(m_before); }
  NoUmask(const NoUmask&) = delete;
  NoUmask& operator=(const NoUmask&) = delete;

private:
  mode_t m_before;
};

} // namespace Tallymoor
