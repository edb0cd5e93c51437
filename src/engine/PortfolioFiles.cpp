#include "engine/PortfolioFiles.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "xml/CapitalRecord.h"

namespace Tallymoor {

String capitalRecordFile(const String& portfolioName) {
  // Names are kept free of separators where they are taken; one that slipped through must not lead elsewhere.
  const bool plain = portfolioName.find(u'/') == String::npos;
  return dataDirectory(Platform::Instance(), APP_NAME) +
         capitalRecordFileName(plain ? portfolioName : fileNameFor(portfolioName));
}

} // namespace Tallymoor
