#include "widgets/ModalDialogs.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "widgets/TabWalk.h"
#include <fxkeys.h>

namespace Tallymoor {

FXuint runModal(FXDialogBox& dialog, FXuint placement, const std::function<FXuint(FXuint)>& execute) {
  if (!MainWindow::Instance().mayOpenDialog())
    return 0;
  // With the window in the tray there is nothing to be placed over.
  const bool overOwner = dialog.getOwner() && dialog.getOwner()->shown();
  if (placement == PLACEMENT_OWNER && !overOwner)
    placement = PLACEMENT_SCREEN;
  const FXWindow* const window = &dialog;
  const ModalLoopScope loop(window);
  return execute(placement);
}

FXWindow* ownerOfNextWindow() {
  MainWindow& window = MainWindow::Instance();
  FXWindow* modal = window.getApp()->getModalWindow();
  return modal && modal->isShell() && modal->shown() ? modal : &window;
}

long keyInDialog(FXDialogBox& dialog, const FXEvent& event, FXuint goOnCommand,
                 const std::function<long()>& toolkitHandler) {
  const bool enter = event.code == KEY_Return || event.code == KEY_KP_Enter;
  // A text field with the focus is the toolkit's default widget, and would do nothing with the key.
  const bool inField = dynamic_cast<FXTextField*>(widgetWithKeyboard(dialog)) != nullptr;
  if (!(enter && inField) && toolkitHandler())
    return 1;
  return enter ? dialog.handle(&dialog, FXSEL(SEL_COMMAND, goOnCommand), nullptr) : 0;
}

} // namespace Tallymoor
