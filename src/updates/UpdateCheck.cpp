#include "updates/UpdateCheck.h"
#include "foundation/BigMutex.h"
#include "foundation/LengthyFunctions.h"
#include "foundation/ProgramFiles.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "updates/ProgramUpdater.h"
#include "updates/UpdateSearch.h"
#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <stop_token>

namespace Tallymoor {

namespace {

constexpr std::size_t LONGEST_REASON = 500; ///< bytes

constexpr std::chrono::milliseconds BETWEEN_EVENTS{20};

/// Asks the service on a thread of its own, so that the user may see to the windows and give up waiting.
class WatchedLook : public HasLengthyFunctions {
public:
  void runLengthyFunction(Progress& progress, int) override {
    progress.setText(u"asking the update service");
    std::stop_source stop;
    Updates updates(UpdateSettings::current(), stop.get_token());
    auto answer = std::async(std::launch::async, [&updates] { return lookForUpdates(updates, true); });
    while (!isThere(answer)) {
      progress.setText(String());
      if (progress.isCancelled())
        stop.request_stop();
    }
    m_found = answer.get();
  }
  const UpdatesFound& found() const { return m_found; }

private:
  static bool isThere(const std::future<UpdatesFound>& answer) {
    const BigMutexRelease release;
    return answer.wait_for(BETWEEN_EVENTS) == std::future_status::ready;
  }

  UpdatesFound m_found;
};

/// What this copy can't update, and why; empty where it can update everything.
String limitsOf(const UpdatesFound& found) {
  if (found.documentsFixed)
    return u"Tallymoor can't update itself.\n" + found.documentsFixed->message();
  if (found.programFilesFixed)
    return u"Tallymoor can't update its own program files, only its documents.\n" +
           found.programFilesFixed->message();
  return String();
}

/// A result with what limits it, in one box.
String withLimits(const String& result, const String& limits) {
  return limits.empty() ? result : result + u"\n\n" + limits;
}

} // namespace

void checkForUpdates(ProgramUpdater& updater) {
  if (TallymoorInternet::exists() && !TallymoorInternet::Instance().isOnline()) {
    UserInteraction::Instance().information(
        u"You are working offline. Press the button \"offline\" at the right of\n"
        u"the tool bar, and then check for updates again.");
    return;
  }
  WatchedLook look;
  if (!UserInteraction::Instance().runLengthy(u"Check For Updates", u"Looking for updates", 1, look, 0))
    return;
  const UpdatesFound& found = look.found();
  if (!found.any && !found.failures.empty())
    throw found.failures.front();
  UserInteraction& user = UserInteraction::Instance();
  const String limits = limitsOf(found);
  if (found.any) {
    if (user.question(withLimits(u"Updates are available. Download now in the background?", limits)))
      updater.requestDownload();
  } else if (found.documentsFixed) {
    user.information(limits); // no service was asked: nothing is known of updates
  } else {
    user.information(withLimits(u"There are currently no updates available.", limits));
  }
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
