#pragma once
#include "foundation/Uninterrupted.h"
#include <cerrno>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Tallymoor {

/// Owns a file descriptor. Negative if the file is not open.
class OpenFile {
public:
  explicit OpenFile(int descriptor) : m_descriptor(descriptor) {}
  OpenFile(OpenFile&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
  ~OpenFile() { close(); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int get() const { return m_descriptor; }
  /// Closes the file. Returns 0 or the errno value: some file systems report a failed write only here.
  int close() {
    if (m_descriptor < 0)
      return 0;
    const int result = ::close(m_descriptor);
    m_descriptor = -1;
    return result == 0 || errno == EINTR ? 0 : errno;
  }

private:
  int m_descriptor;
};

/// The folder of a path; "." for a plain file name.
inline std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos)
    return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

/// The names in a folder. If reading fails, the names read so far.
inline std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code failed;
  for (std::filesystem::directory_iterator entry(folder, failed), end; !failed && entry != end;
       entry.increment(failed))
    names.push_back(entry->path().filename());
  return names;
}

} // namespace Tallymoor
