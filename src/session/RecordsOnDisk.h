#pragma once
#include "foundation/String.h"
#include <cstdint>
#include <string_view>

namespace Tallymoor {

/// The records document as this program last read or wrote it, to notice when another hand has changed it
/// since then: a synchronised folder, an editor, a copy that was put there. A file that only looks newer is
/// read, and is no other one if its content is the same.
class RecordsOnDisk {
public:
  /// The file as it stands; also one that is missing.
  static RecordsOnDisk asRead(const String& path);
  /// A file that has just been written with this content, before it gets its name.
  static RecordsOnDisk asWritten(const String& temporaryPath, std::string_view content);

  /// Whether another content stands in the file now. A file that has gone is none.
  bool isAnothers(const String& path);

private:
  /// What a look at the file gives.
  struct Look {
    std::uint64_t device = 0;
    std::uint64_t inode = 0; ///< 0 for a file that is missing
    std::int64_t size = 0;
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
    bool operator==(const Look&) const = default;
  };

  static Look lookAt(const String& path);

  Look m_look;
  std::uint32_t m_checksum = 0;
};

} // namespace Tallymoor
