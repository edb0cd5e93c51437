#include "updates/UpdateFolders.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "foundation/ProgramFiles.h"
#include "foundation/Uninterrupted.h"
#include "updates/UpdateHandover.h"
#include "updates/Updates.h"
#include <filesystem>
#include <sys/stat.h>

namespace Tallymoor {

namespace {

std::string usersUpdateFolder() {
  return (Platform::Instance().userHomeDirectory(APP_NAME) + u"/Updates/").toUTF8();
}

/// True for a folder that is ours alone.
bool mayHoldUpdates(const std::string& folder) {
  return isOwnFolder(folder) && (folder != UPDATE_FOLDER || (isOwnFolder(".") && !belongsToPackage()));
}

} // namespace

std::string updateFolder() {
  if (isOwnFolder(".") && !belongsToPackage())
    ::mkdir(UPDATE_FOLDER, 0700); // when it is there, or can't be made, the test knows
  if (mayHoldUpdates(UPDATE_FOLDER))
    return UPDATE_FOLDER;
  std::string folder = usersUpdateFolder();
  ::mkdir(folder.c_str(), 0700);
  return folder;
}

void finishInterruptedUpdates() {
  std::error_code ignored;
  bool documentsWait = false;
  for (const std::string& folder : {std::string(UPDATE_FOLDER), usersUpdateFolder()}) {
    if (!mayHoldUpdates(folder))
      continue;
    removeWithContents(folder + STAGED_UPDATES);
    removeWithContents(folder + LOCATORS_TOGETHER);
    documentsWait = documentsWait || std::filesystem::exists(folder + DOWNLOADED_DOCUMENTS, ignored);
  }
  if (mayHoldUpdates(UPDATE_FOLDER)) {
    moveUpCompleteUpdates();
    if (!updatesPending())
      removeWithContents(PREVIOUS_FILES);
  }
  if (!documentsWait)
    return;
  try {
    Updates().installConfigUpdates();
  } catch (const Exception&) {
    // They go on waiting for the next start.
  }
}

} // namespace Tallymoor
