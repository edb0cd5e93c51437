#include "updates/UpdateHandover.h"
#include "foundation/Constants.h"
#include "foundation/Platform.h"
#include <filesystem>
#include <unistd.h>

namespace Tallymoor {

bool updatesPending() {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(UPDATE_FOLDER, error)) {
    std::error_code unreadable;
    if (!entry.is_directory(unreadable))
      return true;
  }
  return false;
}

UpdateHandover handOverToUpdateInstaller(Platform& platform) {
  if (!updatesPending() || belongsToPackage() || ::access(".", W_OK) != 0)
    return UpdateHandover::StartProgram;
  std::error_code error;
  if (std::filesystem::exists(OVERRIDE_MARKER, error)) {
    std::filesystem::remove(OVERRIDE_MARKER, error);
    return UpdateHandover::StartProgram;
  }
  return platform.openDocument(UPDATE_INSTALLER_EXE) ? UpdateHandover::InstallerRuns
                                                     : UpdateHandover::InstallerMissing;
}

} // namespace Tallymoor
