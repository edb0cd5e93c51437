#pragma once
#include "foundation/FileVersion.h"
#include "foundation/String.h"
#include <array>
#include <cstdint>

namespace Tallymoor {

/// One of the program's files that updates replace.
struct LocalProgramFile {
  /// The one local file with this stem. Throws ProgramFilesFixed unless there is exactly one, with a version.
  static LocalProgramFile withStem(const String& stem);

  /// By major, minor and patch.
  bool isOlderThan(const std::array<std::int64_t, 3>& version) const;
  bool isOlderThanFile(const String& path) const;
  /// Gives the other file the same permissions.
  void passModeTo(const String& path) const;

  String name;
  FileVersion version{};
};

} // namespace Tallymoor
