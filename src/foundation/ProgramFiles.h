#pragma once
#include <string>
#include <vector>

namespace Tallymoor {

// The program's own files, as they lie in the folder of an installed copy, and what passes between the
// program and the installer of its updates. Texts are in UTF-8 and all paths relative to the current folder:
// the installer shares this, and it must not need the libraries that it replaces.

/// Where downloaded program files wait; a file right in it sends the next start to the installer.
inline constexpr const char* UPDATE_FOLDER = "./updates/";
/// A set of downloaded files that is whole and is about to be moved up into the update folder.
inline constexpr const char* COMPLETE_UPDATES = "./updates/complete";
/// Lets one start pass although updates wait.
inline constexpr const char* OVERRIDE_MARKER = "override.start.tallymoor";
/// Files as they were, and links and files on their way to their places, while the installer works.
inline constexpr const char* PREVIOUS_FILES = "./updates/previous";
/// Why the installer could not do its work; the program tells of it and removes it.
inline constexpr const char* INSTALLER_FAILURE = "update.failure.tallymoor";
/// Laid down by a package of the system. The files beside it are the package manager's, which nothing but a
/// newer package may change, whoever runs the program.
inline constexpr const char* PACKAGE_MARKER = "package.tallymoor";
/// Holds links to the libraries by the names that the loader looks for.
inline constexpr const char* LIBRARY_LINKS = "./lib/";

/// The program, its installer, then the stems of its libraries, in the order in which updates look at them.
const std::vector<std::string>& programFileStems();

/// True for a plain file name that belongs to the stem: the very name of an executable; for a library the
/// stem, then letters, digits, ".", "_" and "-", and ".dll" at the end.
bool isProgramFileName(const std::string& fileName, const std::string& stem);
/// The stem that a file name belongs to by isProgramFileName; empty when there is none.
std::string stemOfProgramFile(const std::string& fileName);

/// Names of the files, not folders, in the current folder that begin with the stem in any case, sorted.
/// Throws std::filesystem::filesystem_error where the folder can't be read.
std::vector<std::string> filesWithStem(const std::string& stem);

/// Moves the files of COMPLETE_UPDATES up into the update folder, whole or as far as it goes; what could not
/// be moved stays there for the next attempt, and the result is false. Does nothing when there is no such
/// folder.
bool moveUpCompleteUpdates();

/// True for a folder that belongs to this user, who can write to it, and that nobody else can write to.
bool isOwnFolder(const std::string& path);

/// True when the program in the current folder was installed as a package of the system.
bool belongsToPackage();

/// Creates the empty marker file. False when it could not be made.
bool leaveOverrideMarker();
/// Leaves the reason in INSTALLER_FAILURE, whole or not at all.
void leaveInstallerFailure(const std::string& reason);

} // namespace Tallymoor
