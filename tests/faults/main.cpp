// The program under test of "inject-faults": makes a save in a separate profile, and the next start after it.
//   fault_target prepare KIND first|overwrite FOLDER
//   fault_target save KIND FOLDER QUERYBASE KEY   prints the messages to the user after "told: "
//   fault_target start                            reads folders, one per line; prints a line for each
//   fault_target serve                            runs the update service; prints its address and key
#include "Profile.h"
#include "Saves.h"
#include "foundation/Constants.h"
#include "foundation/UnforeseenFailure.h"
#include "market/SharePriceCache.h"
#include "session/PortfolioStore.h"
#include "session/ProfileFolders.h"
#include "support/updates/TestUpdateService.h"
#include "updates/UpdateFolders.h"
#include "updates/UpdateHandover.h"
#include <ctime>
#include <filesystem>
#include <iostream>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Tallymoor;

namespace {

namespace fs = std::filesystem;

constexpr int MOST_STARTS = 4; ///< After a failed installation, one start skips the installer.

/// Marks a place in the trace for the driver.
void mark(const char* name) {
  (void)::access(name, F_OK);
}

int prepare(const std::string& kind, bool overwrite, const std::string& folder) {
  const Profile profile(folder);
  tidyProfileFolders();
  saves().at(kind).prepare(overwrite);
  return profile.errorsTold().empty() ? 0 : 1;
}

int save(const std::string& kind, const std::string& folder, const UpdateServiceAddress& service) {
  const Profile profile(folder);
  const std::function<void()> work = saves().at(kind).makeReady(service);
  std::vector<std::string> told;
  mark("/the save begins");
  try {
    withUnforeseenFailures(work);
  } catch (const Exception& exception) {
    told.push_back(exception.description().toUTF8());
  }
  mark("/the save ends");
  for (const std::string& error : profile.errorsTold())
    told.push_back(error);
  for (const std::string& error : told)
    std::cout << "told: " << error << '\n';
  std::cout << "came to its end" << std::endl;
  ::_exit(0); // What follows is not part of the save.
}

/// Repeats the update part of a start until no updates wait.
void startUntilUpdatesAreIn() {
  for (int start = 0; start < MOST_STARTS; ++start) {
    finishInterruptedUpdates();
    if (handOverToUpdateInstaller(Platform::Instance()) == UpdateHandover::StartProgram && !updatesPending())
      return;
    fs::remove(INSTALLER_FAILURE); // The start has shown it.
  }
  throw Exception(u"updates wait for ever");
}

void loadAll() {
  PortfolioStore store(UserInteraction::Instance());
  store.load();
  if (store.loadFailed())
    throw Exception(u"the records can't be read");
  const String folder = cacheDirectory(Platform::Instance(), APP_NAME);
  SharePriceCache cache(folder);
  for (const String code : {u"ABC.AX", u"^INDEX"})
    if (cache.share(code).values.empty() && fs::exists(cache.pathOf(code).toUTF8()))
      throw Exception(u"no prices in the cache of " + code);
}

int startAll() {
  for (std::string folder; std::getline(std::cin, folder);) {
    std::string result = "sound";
    try {
      const Profile profile(folder);
      withUnforeseenFailures([] {
        startUntilUpdatesAreIn();
        tidyProfileFolders();
        loadAll();
      });
      fs::remove(INSTALLER_FAILURE);
    } catch (const Exception& exception) {
      result = exception.description().toUTF8();
    }
    std::cout << folder << '\t' << result << std::endl;
  }
  return 0;
}

int serve() {
  TestUpdateService service;
  std::vector<TestUpdateService::Component> documents;
  for (const auto& [name, content] : offeredDocuments()) {
    documents.push_back({name, "50.0.0"});
    service.serveSigned(name, content);
  }
  service.offerDocuments(documents);
  std::vector<TestUpdateService::Component> files;
  for (const auto& [name, content] : offeredProgramFiles()) {
    files.push_back({name, name.starts_with("FOXDLL") ? "1.6.58" : "2.0.0"});
    service.serveSigned(name, content);
  }
  service.offerProgramFiles(files);
  std::cout << service.settings().queryBase.toUTF8() << '\n' << service.settings().publicKey << std::endl;
  std::cin.get(); // Until the driver ends.
  return 0;
}

int run(const std::vector<std::string>& words) {
  if (words.size() == 4 && words[0] == "prepare")
    return prepare(words[1], words[2] == "overwrite", words[3]);
  if (words.size() == 5 && words[0] == "save")
    return save(words[1], words[2], {words[3], words[4]});
  if (words.size() == 1 && words[0] == "start")
    return startAll();
  if (words.size() == 1 && words[0] == "serve")
    return serve();
  std::cerr << "fault_target: see the head of its source\n";
  return 2;
}

} // namespace

/// The journal holds the moment of each change. It is the same in every run.
extern "C" int clock_gettime(clockid_t clock, timespec* now) noexcept {
  if (clock != CLOCK_REALTIME)
    return static_cast<int>(::syscall(SYS_clock_gettime, clock, now));
  *now = {1'772'500'000, 0};
  return 0;
}

int main(int argc, char** argv) {
  return run(std::vector<std::string>(argv + 1, argv + argc));
}
