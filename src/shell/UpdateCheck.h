#pragma once

namespace Tallymoor {

class ProgramUpdater;

// What the window does about updates. GUI thread, under the big mutex.

/// Looks for updates now, says when there are none or why the program's own files are left out, and asks
/// whether to download what there is; if so, the updater does it. Throws Exception where the service can't be
/// asked.
void checkForUpdates(ProgramUpdater& updater);

/// Tells, once, why the installer could not put downloaded updates in place before this start.
void tellInstallerFailure();

} // namespace Tallymoor
