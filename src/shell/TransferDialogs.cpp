#include "shell/TransferDialogs.h"
#include "foundation/UserInteraction.h"
#include "session/PortfolioExport.h"
#include "widgets/HandlerScope.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <fx.h>
#include <optional>

namespace Tallymoor {

namespace {

constexpr const char* FILE_PATTERNS = "Portfolio Files (*.xml)\nAll Files (*)\n";

FXString startFolder() {
  const FXString last = toFox(lastTransferFolder());
  return FXStat::isDirectory(last) ? last : FXSystem::getHomeDirectory();
}

/// The dialog's field for a file's name, which the toolkit keeps to itself.
FXTextField* nameField(FXWindow& window) {
  for (FXWindow* child = window.getFirst(); child; child = child->getNext()) {
    if (auto* field = dynamic_cast<FXTextField*>(child))
      return field;
    if (FXTextField* field = nameField(*child))
      return field;
  }
  return nullptr;
}

/// The toolkit's own answer has lost what follows a "$" in the name, as if it were a variable.
FXString chosenFile(const FXFileDialog& dialog, const FXTextField* nameField) {
  const FXString typed = nameField ? nameField->getText() : FXString();
  if (typed.empty() || typed[0] == '~')
    return dialog.getFilename();
  return FXPath::simplify(FXPath::isAbsolute(typed) ? typed : dialog.getDirectory() + PATHSEPSTRING + typed);
}

/// Nothing when the user cancelled. Whether there is such a file is left to the caller: the toolkit would
/// look for its own answer.
std::optional<FXString> chooseFile(FXWindow* owner, const char* title) {
  FXFileDialog dialog(owner, title);
  dialog.setPatternList(FILE_PATTERNS);
  dialog.setSelectMode(SELECTFILE_ANY);
  dialog.setDirectory(startFolder());
  // The size that it had last may be from before the texts were made larger.
  dialog.resize(std::max(dialog.getWidth(), scaledToText(500)),
                std::max(dialog.getHeight(), scaledToText(300)));
  dialog.create();
  FXTextField* field = nameField(dialog);
  if (field)
    field->setFocus(); // the toolkit would begin in none, and what is typed would be lost
  ModalLoopScope modal(&dialog);
  if (!dialog.execute())
    return std::nullopt;
  rememberTransferFolder(fromFox(dialog.getDirectory()));
  return chosenFile(dialog, field);
}

} // namespace

String chooseImportFile(FXWindow* owner) {
  const auto file = chooseFile(owner, "Import portfolios from:");
  return file ? fromFox(*file) : String();
}

void exportPortfolios(FXWindow* owner, XMLPortfolios& records) {
  auto file = chooseFile(owner, "Export portfolios to:");
  if (!file)
    return;
  if (FXPath::extension(*file).empty())
    file->append(".xml");
  const String name = fromFox(*file);
  UserInteraction& user = UserInteraction::Instance();
  if (FXStat::exists(*file) &&
      !user.question(u"Do you want to overwrite the file\n" + name + u"\nwith your exported portfolios?"))
    return;
  writeExport(name, records);
  user.information(u"Your portfolios have been exported to\n" + name +
                   u"\nThis can be used as a backup, or imported for a different user or computer.");
}

} // namespace Tallymoor
