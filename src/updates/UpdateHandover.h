#pragma once
#include "foundation/ProgramFiles.h" // leaveOverrideMarker

namespace Tallymoor {

class Platform;

/// What the start of the process must do about downloaded updates.
enum class UpdateHandover {
  StartProgram,    ///< nothing waits, or the marker of a failed hand-over let this start pass
  InstallerRuns,   ///< the installer was started; this process must end at once and touch nothing
  InstallerMissing ///< the installer could not be started; tell the user, leave the marker and end
};

/// True when at least one file, of any name, lies in "./updates/".
bool updatesPending();

/// Decides by the update folder and the marker file, both relative to the current folder. Removes a marker
/// that is there; the updates then wait for the start after this one. Where the installer could do nothing,
/// since the folder can't be written or its files are a package's, the program just starts.
UpdateHandover handOverToUpdateInstaller(Platform& platform);

} // namespace Tallymoor
