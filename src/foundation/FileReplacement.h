#pragma once
#include "foundation/String.h"
#include <functional>
#include <iosfwd>

namespace Tallymoor {

/// Replaces a file atomically: a crash or failure leaves either the old or the new content, complete. The
/// content is written to a temporary in the same folder, flushed to disk, checked and renamed. Throws
/// Exception with the path and the system's reason. The old file is then unchanged and the temporary removed,
/// except if the last step, the flush of the folder, fails: then the new file is in place but may not survive
/// a power failure.
///
/// An existing file keeps its mode. A symbolic link is followed. All hard links of a file get the new
/// content; see LinkedFile.h. A new file has mode 0600.
///
/// check, if given, gets the path of the finished temporary and throws to reject it.
void replaceFile(const String& path, const std::function<void(std::ostream&)>& write,
                 const std::function<void(const String& temporaryPath)>& check = {});

/// Copies a file by replaceFile. Returns false and does nothing if the source is missing. If the target is a
/// hard link to the source, it becomes a separate file.
bool copyFileReplacing(const String& from, const String& to);

/// True if both files can be read and are equal byte by byte.
bool haveSameContent(const String& left, const String& right);

/// Removes temporaries left by an interrupted replaceFile, in this folder and in the folders of symbolic
/// links in it. An interrupted write to a file with several hard links is completed first. Throws Exception
/// if that fails.
void removeLeftoverTemporaries(const String& folder);

enum class FilePresence { Missing, RegularFile, Unusable };
/// Missing: the path does not exist. A dangling link, a folder or an unreadable file is Unusable.
FilePresence filePresence(const String& path);
/// Truncates a file and keeps its mode and links. A read-only file is removed instead. Returns false if the
/// file is missing; throws Exception on failure.
bool emptyFile(const String& path);
/// Returns false if the file is missing; throws Exception if it can't be removed.
bool removeFile(const String& path);

} // namespace Tallymoor
