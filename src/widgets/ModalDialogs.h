#pragma once
#include <functional>
#include <fx.h>

namespace Tallymoor {

// How every modal dialog of the program behaves, whatever it derives from.

/// Runs a dialog's loop. Opens nothing and gives 0 while a background pass runs; a dialog whose owner is not
/// in sight is placed on the screen. The toolkit's own execute() is what is handed in, with the placement.
FXuint runModal(FXDialogBox& dialog, FXuint placement, const std::function<FXuint(FXuint)>& execute);

/// What a window that opens now belongs to: the dialog that is open, so that it can't come up behind it and
/// gives the keyboard back to it, or else the main window.
FXWindow* ownerOfNextWindow();

/// A key in a dialog: Enter that no widget wants is the dialog's command to go on, whatever has the focus.
/// The toolkit's own handler is what is handed in.
long keyInDialog(FXDialogBox& dialog, const FXEvent& event, FXuint goOnCommand,
                 const std::function<long()>& toolkitHandler);

} // namespace Tallymoor
