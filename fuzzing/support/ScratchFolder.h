#pragma once
#include <string>
#include <string_view>

namespace Tallymoor::Fuzz {

/// A temporary folder for the lifetime of the program, in memory if possible. Removed at the end, but kept
/// after a crash.
class ScratchFolder {
public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::string& path() const { return m_path; }
  /// Writes or replaces a file, creates the folders above it, and returns its path.
  std::string write(const std::string& name, std::string_view bytes) const;

private:
  std::string m_path;
};

} // namespace Tallymoor::Fuzz
