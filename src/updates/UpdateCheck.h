#pragma once

namespace Tallymoor {

class ProgramUpdater;

// What the window does about updates. GUI thread, under the big mutex.

/// Looks for updates now and shows one box: that there are none, or whether to download what there is; why
/// the program's own files, or all updates, are left out, stands in it. The updater does the download. Throws
/// Exception where the service can't be asked.
void checkForUpdates(ProgramUpdater& updater);

/// Tells, once, why the installer could not put downloaded updates in place before this start.
void tellInstallerFailure();

} // namespace Tallymoor
