#include "widgets/FileChoice.h"
#include "foundation/TransferFolder.h"
#include "widgets/HandlerScope.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <fx.h>

namespace Tallymoor {

namespace {

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

/// True when the user has chosen. The name stands in the field at first.
bool run(FXFileDialog& dialog, const FXString& folder, const String& name) {
  dialog.setDirectory(folder);
  // The size that it had last may be from before the texts were made larger.
  dialog.resize(std::max(dialog.getWidth(), scaledToText(500)),
                std::max(dialog.getHeight(), scaledToText(300)));
  dialog.create();
  if (FXTextField* field = nameField(dialog)) {
    field->setText(toFox(name));
    field->setFocus(); // the toolkit would begin in none, and what is typed would be lost
  }
  ModalLoopScope modal(&dialog);
  return dialog.execute() != 0;
}

} // namespace

String chooseFile(FXWindow* owner, const String& title, const String& patterns, const String& name) {
  FXFileDialog dialog(owner, toFox(title));
  dialog.setPatternList(toFox(patterns));
  dialog.setSelectMode(SELECTFILE_ANY);
  if (!run(dialog, startFolder(), name))
    return String();
  rememberTransferFolder(fromFox(dialog.getDirectory()));
  return fromFox(chosenFile(dialog, nameField(dialog)));
}

String chooseFolder(FXWindow* owner, const String& title) {
  FXFileDialog dialog(owner, toFox(title));
  dialog.setSelectMode(SELECTFILE_DIRECTORY);
  const FXString home = FXSystem::getHomeDirectory();
  return run(dialog, home, fromFox(home)) ? fromFox(chosenFile(dialog, nameField(dialog))) : String();
}

} // namespace Tallymoor
