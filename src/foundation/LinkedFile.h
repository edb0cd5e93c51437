#pragma once
#include <string>

namespace Tallymoor {

// A file that the user has given a second name (a hard link) can't be replaced by renaming: the other name
// would keep the old content. It is written in its place instead, and whatever happens meanwhile, the new
// content lies whole in a temporary beside it:
//
//   1. the temporary is whole, flushed and checked, as for every file;
//   2. a note beside it says which file it is for, and the folder is flushed; from here on the new content
//      counts, and the next start finishes what is cut off;
//   3. room is reserved, the content is written over the old one, cut to its length and flushed;
//   4. note and temporary are removed.
//
// Where step 3 fails, the temporary is renamed over the file after all: the content goes before the link.
// Between a cut in step 3 and the next start, the file holds a mixture. All throw Exception.

/// True for a regular file that has another name besides this one and can be opened to write.
bool hasAnotherName(const std::string& path);

/// Steps 2 to 4; the temporary is taken over. The old file stands where it throws before step 3, the new one
/// where it throws later.
void writeIntoLinkedFile(const std::string& temporary, const std::string& target);

/// Finishes in a folder what was cut off. Only files of this user that stand in the folder itself are taken.
void finishLinkedFiles(const std::string& folder);

} // namespace Tallymoor
