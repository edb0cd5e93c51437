#pragma once
#include <string>
#include <string_view>

namespace Tallymoor::Fuzz {

/// A folder of its own for files that live as long as the program, in memory where the system has such a
/// place. It is removed at the end; after a crash it stays.
class ScratchFolder {
public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::string& path() const { return m_path; }
  /// Writes a file, in place of one that is there, with the folders above it, and gives its path.
  std::string write(const std::string& name, std::string_view bytes) const;

private:
  std::string m_path;
};

} // namespace Tallymoor::Fuzz
