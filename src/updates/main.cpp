// UpdateInstaller.exe: started by the program, with no arguments and in the program's folder, when downloaded
// files wait there. Puts them in place and starts the program again. It stands on the C++ library alone,
// since it replaces the others.
#include "foundation/ProgramFiles.h"
#include "foundation/ProgramStart.h"
#include "foundation/VersionRecord.h"
#include "updates/UpdateInstallation.h"
#include <cstdio>

TALLYMOOR_VERSION_RECORD("1.3.1.510");

using namespace Tallymoor;

namespace {

constexpr unsigned LONGEST_WAIT = 60000; ///< milliseconds for the program to end

void install() {
  if (!waitForProgramsEnd(LONGEST_WAIT))
    throw InstallationFailure("the program was still running");
  UpdateInstallation().run();
}

/// The program tells it, and starts although the updates wait. False when it could not be left: then every
/// start would come back here.
bool leaveFailure(const char* reason) {
  std::fprintf(stderr, "UpdateInstaller: %s\n", reason);
  leaveInstallerFailure(reason);
  return leaveOverrideMarker();
}

bool startTheProgram() {
  const std::string program = "./" + programFileStems().front();
  return isTrustedProgram(program) && startProgram(program, {});
}

} // namespace

int main() {
  if (belongsToPackage()) {
    std::fputs("UpdateInstaller: the package manager keeps the files of this copy\n", stderr);
    return 1;
  }
  bool installed = true;
  try {
    install();
  } catch (const std::exception& failure) {
    installed = false;
    if (!leaveFailure(failure.what()))
      return 1;
  }
  return startTheProgram() && installed ? 0 : 1;
}
