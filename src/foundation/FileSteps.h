#pragma once
#include <string>

namespace Tallymoor {

// The steps that replaceFile is made of. Each throws Exception "replaceFile - ..." with the path and the
// system's reason.

/// Throws it.
[[noreturn]] void failReplacing(const char* what, const std::string& path, int reason);

/// Writes all bytes, whatever is interrupted or written in part. 0, or the error.
int writeWhole(int file, const char* bytes, std::size_t count);

/// Makes what happened to the names in a file's folder last. The files are in their places by now, so a
/// folder that may not be read, or a file system that can't flush one, is no failure; a disk that fails is,
/// since the old file may come back with the next start of the machine.
void flushFolderOf(const std::string& path);

} // namespace Tallymoor
