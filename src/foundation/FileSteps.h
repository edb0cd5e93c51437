#pragma once
#include <string>

namespace Tallymoor {

// The steps of replaceFile. Each throws Exception "replaceFile - ..." with the path and the system's reason.

/// Throws that exception.
[[noreturn]] void failReplacing(const char* what, const std::string& path, int reason);

/// Writes all bytes, repeating interrupted and partial writes. Returns 0 or the errno value.
int writeWhole(int file, const char* bytes, std::size_t count);

/// Flushes the folder of a path, so that renames in it survive a power failure. An unreadable folder and a
/// file system without folder flushing are ignored. Throws on an I/O error, since the old file could then
/// come back after a restart.
void flushFolderOf(const std::string& path);

} // namespace Tallymoor
