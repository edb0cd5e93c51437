#pragma once
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace Tallymoor {

/// Makes a system call, again as long as a signal interrupts it, and gives its result.
template <class SystemCall>
auto uninterrupted(SystemCall call) {
  auto result = call();
  while (result < 0 && errno == EINTR)
    result = call();
  return result;
}

/// The same for work by the standard library, which throws.
template <class Work>
auto retryIfInterrupted(Work work) {
  for (;;)
    try {
      return work();
    } catch (const std::filesystem::filesystem_error& error) {
      if (error.code() != std::errc::interrupted)
        throw;
    }
}

/// A file as a stream of its bytes; not open when it can't be opened.
inline std::ifstream openToRead(const std::string& path) {
  std::ifstream file;
  do {
    errno = 0;
    file.open(path, std::ios::binary);
  } while (!file.is_open() && errno == EINTR);
  return file;
}

/// Removes a folder with all that is in it, or a file. What can't be removed stays; false then.
inline bool removeWithContents(const std::filesystem::path& path) {
  try {
    retryIfInterrupted([&path] { std::filesystem::remove_all(path); });
    return true;
  } catch (const std::filesystem::filesystem_error&) {
    return false;
  }
}

} // namespace Tallymoor
