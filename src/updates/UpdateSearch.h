#pragma once
#include "foundation/Exception.h"
#include "updates/Updates.h"
#include <optional>
#include <vector>

namespace Tallymoor {

/// What both tracks of the service have for this copy of the program.
struct UpdatesFound {
  bool any = false;
  std::optional<DocumentsFixed> documentsFixed;       ///< why documents were not asked for
  std::optional<ProgramFilesFixed> programFilesFixed; ///< why the program's files were not asked for
  std::vector<Exception> failures;                    ///< at most one of each track
};

/// Goes through both tracks, documents first, and lets no track suffer from the other one.
UpdatesFound lookForUpdates(Updates& updates, bool checkOnly);

} // namespace Tallymoor
