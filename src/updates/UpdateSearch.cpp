#include "updates/UpdateSearch.h"

namespace Tallymoor {

// Documents first: when the network is away, that is known after one failure, and it is the same one.
UpdatesFound lookForUpdates(Updates& updates, bool checkOnly) {
  UpdatesFound found;
  try {
    found.any = updates.getConfigUpdates(checkOnly);
  } catch (const DocumentsFixed& exception) {
    found.documentsFixed = exception;
  } catch (const Exception& exception) {
    found.failures.push_back(exception);
  }
  try {
    found.any = updates.getBinaryUpdates(checkOnly) || found.any;
  } catch (const ProgramFilesFixed& exception) {
    found.programFilesFixed = exception;
  } catch (const Exception& exception) {
    found.failures.push_back(exception);
  }
  return found;
}

} // namespace Tallymoor
