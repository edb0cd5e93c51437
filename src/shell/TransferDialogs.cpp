#include "shell/TransferDialogs.h"
#include "foundation/UserInteraction.h"
#include "session/PortfolioExport.h"
#include "widgets/FileChoice.h"
#include "widgets/ToolkitText.h"
#include "xml/PortfolioRecords.h"
#include <fx.h>

namespace Tallymoor {

namespace {

const String PATTERNS = u"Portfolio Files (*.xml)\nAll Files (*)\n";

} // namespace

String chooseImportFile(FXWindow* owner) {
  return chooseFile(owner, u"Import portfolios from:", PATTERNS);
}

void exportPortfolios(FXWindow* owner, XMLPortfolios& records) {
  String name = chooseFile(owner, u"Export portfolios to:", PATTERNS);
  if (name.empty())
    return;
  if (FXPath::extension(toFox(name)).empty())
    name += u".xml";
  UserInteraction& user = UserInteraction::Instance();
  if (FXStat::exists(toFox(name)) &&
      !user.question(u"Do you want to overwrite the file\n" + name + u"\nwith your exported portfolios?"))
    return;
  writeExport(name, records);
  user.information(u"Your portfolios have been exported to\n" + name +
                   u"\nThis can be used as a backup, or imported for a different user or computer.");
}

} // namespace Tallymoor
