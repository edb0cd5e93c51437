#pragma once
#include <string>
#include <vector>

namespace Tallymoor {

// The program's own files in an installed folder, and the files by which the program and its update installer
// communicate. All text is UTF-8 and all paths are relative to the current folder. The installer links this
// file, so it must not depend on the libraries that the installer replaces.

/// Downloaded program files. If a file lies directly in it, the next start runs the installer.
inline constexpr const char* UPDATE_FOLDER = "./updates/";
/// A complete set of downloaded files that is to be moved up into the update folder.
inline constexpr const char* COMPLETE_UPDATES = "./updates/complete";
/// Lets one start skip the installer while updates wait.
inline constexpr const char* OVERRIDE_MARKER = "override.start.tallymoor";
/// The installer's backup of the old files, and its intermediate links and files.
inline constexpr const char* PREVIOUS_FILES = "./updates/previous";
/// Reason of a failed installation. The program shows it and removes the file.
inline constexpr const char* INSTALLER_FAILURE = "update.failure.tallymoor";
/// Present in an installation by a system package. Its files belong to the package manager; only a newer
/// package may change them.
inline constexpr const char* PACKAGE_MARKER = "package.tallymoor";
/// Links to the libraries under the names the loader looks for.
inline constexpr const char* LIBRARY_LINKS = "./lib/";

/// The program, its installer and the stems of its libraries, in the order of an update.
const std::vector<std::string>& programFileStems();

/// True for a plain file name of the stem. An executable's name must be equal. A library's name is the stem,
/// then letters, digits, ".", "_" and "-", then ".dll".
bool isProgramFileName(const std::string& fileName, const std::string& stem);
/// The stem of a file name by isProgramFileName. Empty if none matches.
std::string stemOfProgramFile(const std::string& fileName);

/// Names of the files in the current folder that begin with the stem in any case, sorted. Folders are
/// skipped. Throws std::filesystem::filesystem_error if the folder can't be read.
std::vector<std::string> filesWithStem(const std::string& stem);

/// Moves the files of COMPLETE_UPDATES to UPDATE_FOLDER. Returns false if a file could not be moved; the
/// remaining files wait for the next attempt. Does nothing if there is no such folder.
bool moveUpCompleteUpdates();

/// True for a folder that belongs to this user and that only this user can write to.
bool isOwnFolder(const std::string& path);

/// True if the program in the current folder was installed by a system package.
bool belongsToPackage();

/// Creates OVERRIDE_MARKER. Returns false on failure.
bool leaveOverrideMarker();
/// Writes the reason to INSTALLER_FAILURE. Leaves no partial file.
void leaveInstallerFailure(const std::string& reason);

} // namespace Tallymoor
