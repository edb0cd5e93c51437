#pragma once
#include <sys/types.h>

namespace Tallymoor {

/// The system calls under replaceFile, as pointers, so that tests can let one fail after so many bytes, be
/// interrupted, or write less than it was given. Changed by tests only, while no other thread writes files.
struct FileOperations {
  ssize_t (*write)(int file, const void* bytes, size_t count);
  int (*sync)(int file);
  int (*rename)(const char* from, const char* to);

  /// What is called now.
  static FileOperations& current();
  /// The system's own, to go back to.
  static const FileOperations& system();
};

} // namespace Tallymoor
