#include "session/PortfolioExport.h"
#include "foundation/Constants.h"
#include "foundation/Settings.h"
#include "xml/DocumentFile.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

namespace {

const String SECTION = u"Gui Settings";
const String FOLDER = u"TransferFolder";

XMLElement* newRecords() {
  return new XMLPortfolios;
}

} // namespace

String lastTransferFolder() {
  return Settings::Instance().readString(SECTION, FOLDER);
}

void rememberTransferFolder(const String& folder) {
  Settings::Instance().writeString(SECTION, FOLDER, folder);
}

// The folder must be known before there is a temporary in it that the next start may have to remove.
void writeExport(const String& path, XMLPortfolios& records) {
  rememberTransferFolder(path.substr(0, path.find_last_of(u'/') + 1));
  Settings::Instance().commitIfPossible();
  saveDocument(path, records, RECORDS_DTD, newRecords);
}

} // namespace Tallymoor
