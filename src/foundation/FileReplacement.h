#pragma once
#include "foundation/String.h"
#include <functional>
#include <iosfwd>

namespace Tallymoor {

/// Writes a file so that a crash or failure at any moment leaves the old one or the new one, whole: the
/// content goes to a temporary beside it, is flushed to disk, checked, and renamed over the old file. Throws
/// Exception with the path and the system's reason; the old file then stands and the temporary is removed.
/// Only when the folder can't be flushed at the end does the new file stand, and may not last.
///
/// An existing file keeps its mode, a link is followed, and all names of a file with several (hard links) get
/// the new content, as LinkedFile.h tells. A new file can be read and written by this user alone.
///
/// check, if given, is called with the path of the finished temporary and throws to refuse it.
void replaceFile(const String& path, const std::function<void(std::ostream&)>& write,
                 const std::function<void(const String& temporaryPath)>& check = {});

/// Copies a file by replaceFile. A missing source does nothing and gives false. A copy that is a hard link of
/// its source becomes a file of its own.
bool copyFileReplacing(const String& from, const String& to);

/// True when both files can be read and agree in every byte.
bool haveSameContent(const String& left, const String& right);

/// Removes temporaries that an interrupted replaceFile left in a folder, or behind a link that stands in it;
/// a file with several names, of which one was being written, is finished first. Throws Exception where that
/// can't be done.
void removeLeftoverTemporaries(const String& folder);

enum class FilePresence { Missing, RegularFile, Unusable };
/// Missing means "does not exist" alone; a dangling link, a folder or missing permission is Unusable.
FilePresence filePresence(const String& path);
/// Takes a file's content away for good and keeps its mode, its links and its other names; one that may not
/// be written is removed. False when there was none; throws Exception.
bool emptyFile(const String& path);
/// False when there was none; throws Exception when it can't be removed.
bool removeFile(const String& path);

/// A stock code as part of a file name, different for each code: characters that a file name can't hold
/// become %XX (half of a surrogate pair %uXXXX), plain codes stay. One that is too long beside the bytes that
/// the file name has besides keeps its beginning and gets a fingerprint.
String fileNameFor(const String& code, std::size_t bytesBeside = 0);

} // namespace Tallymoor
