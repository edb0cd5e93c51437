#pragma once
#include <string>

namespace Tallymoor {

// Replacing a file with several hard links by a rename would leave the other links with the old content. Such
// a file is overwritten in place, and a temporary holds the complete new content meanwhile:
//
//   1. The temporary is written, flushed and checked, as for every file.
//   2. A note next to it names the target, and the folder is flushed. From here on the new content counts,
//      and the next start completes an interrupted write.
//   3. Disk space is reserved; the content is written over the old content, truncated and flushed.
//   4. The note and the temporary are removed.
//
// If step 3 fails, the temporary is renamed over the file: saving the content matters more than the link. If
// step 3 is interrupted, the file holds mixed content until the next start. All functions throw Exception.

/// True for a writable regular file with more than one hard link.
bool hasAnotherName(const std::string& path);

/// Does steps 2 to 4 and takes over the temporary. If it throws before step 3, the file has the old content,
/// otherwise the new one.
void writeIntoLinkedFile(const std::string& temporary, const std::string& target);

/// Completes interrupted writes in a folder. Uses only files that belong to this user and lie directly in the
/// folder.
void finishLinkedFiles(const std::string& folder);

} // namespace Tallymoor
