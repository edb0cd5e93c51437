#include "engine/PortfolioFiles.h"
#include "foundation/Constants.h"
#include "foundation/Platform.h"
#include "xml/CapitalRecord.h"

namespace Tallymoor {

String capitalRecordFile(const String& portfolioName) {
  return dataDirectory(Platform::Instance(), APP_NAME) + capitalRecordFileName(portfolioName);
}

} // namespace Tallymoor
