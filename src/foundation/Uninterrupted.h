#pragma once
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace Tallymoor {

/// Repeats a system call while a signal interrupts it. Returns its result.
template <class SystemCall>
auto uninterrupted(SystemCall call) {
  auto result = call();
  while (result < 0 && errno == EINTR)
    result = call();
  return result;
}

/// The same for std::filesystem operations, which throw.
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

/// Opens a binary stream. Check is_open() for failure.
inline std::ifstream openToRead(const std::string& path) {
  std::ifstream file;
  do {
    errno = 0;
    file.open(path, std::ios::binary);
  } while (!file.is_open() && errno == EINTR);
  return file;
}

/// Removes a file, or a folder with its content. Returns false if something could not be removed.
inline bool removeWithContents(const std::filesystem::path& path) {
  try {
    retryIfInterrupted([&path] { std::filesystem::remove_all(path); });
    return true;
  } catch (const std::filesystem::filesystem_error&) {
    return false;
  }
}

} // namespace Tallymoor
