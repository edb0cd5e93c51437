#pragma once
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace Tallymoor {

/// Why updates could not be installed, in words for the user.
class InstallationFailure : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// Moves the files that wait in "./updates/" over those of the program in the current folder: all of them, or
/// none. Only files by the names of program files are moved in; whatever else lies there goes to
/// "./updates/refused". Each file is replaced by renaming, so that a program still running keeps its own, and
/// keeps its execute bits. A library may come under a new name: the links to the old one are turned to it,
/// and the old one goes. A file goes on waiting until all of this is done: when the installer is killed, the
/// next start of the program lets it finish.
///
/// The files were checked for being genuine before they were put there; here it is checked that no other user
/// can have put them there.
class UpdateInstallation {
public:
  /// Throws InstallationFailure. What was moved before the failure is moved back.
  void run();

private:
  using Path = std::filesystem::path;

  void requireOwnFolders() const;
  void install(const std::string& fileName, const std::string& stem);
  void keepOld(const std::string& fileName);
  void turnLinks(const std::vector<std::string>& oldNames, const std::string& newName);
  void step(const std::string& what, const std::function<void()>& work, std::function<void()> undo);
  void undoAll();

  std::vector<std::function<void()>> m_undo; ///< of the steps that were done, in their order
};

/// Waits until no process runs the program of the current folder. False when one still does after so many
/// milliseconds.
bool waitForProgramsEnd(unsigned milliseconds);

} // namespace Tallymoor
