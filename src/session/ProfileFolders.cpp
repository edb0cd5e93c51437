#include "session/ProfileFolders.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "foundation/Settings.h"
#include "foundation/TransferFolder.h"

namespace Tallymoor {

void tidyProfileFolders() {
  Platform& platform = Platform::Instance();
  const String settings = Settings::Instance().filePath();
  for (const String& folder :
       {dataDirectory(platform, APP_NAME), dataDirectory(platform, APP_NAME) + u"Backups/",
        configDirectory(platform, APP_NAME), configDirectory(platform, APP_NAME) + u"Sources/",
        cacheDirectory(platform, APP_NAME), reportDirectory(platform, APP_NAME),
        String(settings.substr(0, settings.find_last_of(u'/') + 1)), lastTransferFolder()})
    if (!folder.empty())
      removeLeftoverTemporaries(folder);
  installMissingDefaults(platform, APP_NAME);
}

} // namespace Tallymoor
