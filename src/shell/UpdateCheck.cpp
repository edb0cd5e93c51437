#include "shell/UpdateCheck.h"
#include "foundation/ProgramFiles.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "shell/ProgramUpdater.h"
#include "shell/Updates.h"
#include <array>
#include <filesystem>
#include <fstream>

namespace Tallymoor {

namespace {

constexpr std::size_t LONGEST_REASON = 500; ///< bytes

UpdatesFound whatIsAvailable() {
  const WaitCursor wait;
  Updates updates;
  return lookForUpdates(updates, true);
}

} // namespace

void checkForUpdates(ProgramUpdater& updater) {
  if (TallymoorInternet::exists() && !TallymoorInternet::Instance().isOnline()) {
    UserInteraction::Instance().information(
        u"You are working offline. Press the button \"offline\" at the right of\n"
        u"the tool bar, and then check for updates again.");
    return;
  }
  const UpdatesFound found = whatIsAvailable();
  if (!found.any && !found.failures.empty())
    throw found.failures.front();
  UserInteraction& user = UserInteraction::Instance();
  if (found.programFilesFixed)
    user.information(u"Tallymoor can't update its own program files, only its documents.\n" +
                     found.programFilesFixed->message());
  if (!found.any)
    user.information(u"There are currently no updates available.");
  else if (user.question(u"Updates are available. Download now in the background?"))
    updater.requestDownload();
}

void tellInstallerFailure() {
  std::array<char, LONGEST_REASON> reason{};
  {
    std::ifstream file(INSTALLER_FAILURE, std::ios::binary);
    if (!file.is_open())
      return;
    file.read(reason.data(), reason.size() - 1);
  }
  std::error_code ignored;
  std::filesystem::remove(INSTALLER_FAILURE, ignored);
  UserInteraction::Instance().warnOnce(u"Downloaded updates could not be installed: " +
                                           String(reason.data()).trimmed() + u"\nThe next start tries again.",
                                       u"Tallymoor Updates", String(), 2);
}

} // namespace Tallymoor
