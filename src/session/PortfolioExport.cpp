#include "session/PortfolioExport.h"
#include "foundation/Constants.h"
#include "foundation/TransferFolder.h"
#include "xml/DocumentFile.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

namespace {

XMLElement* newRecords() {
  return new XMLPortfolios;
}

} // namespace

void writeExport(const String& path, XMLPortfolios& records) {
  commitTransferFolderOf(path);
  saveDocument(path, records, RECORDS_DTD, newRecords);
}

} // namespace Tallymoor
