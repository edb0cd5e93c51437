#pragma once
#include <sys/types.h>

namespace Tallymoor {

/// The system calls of replaceFile, as pointers. Tests replace them to simulate failures, interruptions and
/// partial writes. Change them only while no other thread writes files.
struct FileOperations {
  ssize_t (*write)(int file, const void* bytes, size_t count);
  int (*sync)(int file);
  int (*rename)(const char* from, const char* to);

  /// The functions in use.
  static FileOperations& current();
  /// The real system calls.
  static const FileOperations& system();
};

} // namespace Tallymoor
