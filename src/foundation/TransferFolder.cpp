#include "foundation/TransferFolder.h"
#include "foundation/Settings.h"

namespace Tallymoor {

namespace {

const String SECTION = u"Gui Settings";
const String FOLDER = u"TransferFolder";

} // namespace

String lastTransferFolder() {
  return Settings::Instance().readString(SECTION, FOLDER);
}

void rememberTransferFolder(const String& folder) {
  Settings::Instance().writeString(SECTION, FOLDER, folder);
}

void commitTransferFolderOf(const String& path) {
  rememberTransferFolder(path.substr(0, path.find_last_of(u'/') + 1));
  Settings::Instance().commitIfPossible();
}

} // namespace Tallymoor
