#pragma once
#include <string>

namespace Tallymoor {

// Where updates lie from their download until they are installed. Folders end in a separator.

// What lies there.
constexpr const char* DOWNLOADED_DOCUMENTS = "documents"; ///< a whole set, to be put in place
constexpr const char* STAGED_UPDATES = "staging";         ///< while a track downloads
constexpr const char* LOCATORS_TOGETHER = "locators";     ///< while they are tried

/// "./updates/" if it and the program's folder are ours; otherwise a folder of the user's, for documents
/// alone. Makes the folder if it may.
std::string updateFolder();

/// For the start of the program, before it looks for waiting updates: removes what an interrupted download or
/// installation left, and finishes what was found good, as documents that were to be put in place. What can't
/// be done now is left for the next start. Changes nothing in a folder that others can write to.
void finishInterruptedUpdates();

} // namespace Tallymoor
