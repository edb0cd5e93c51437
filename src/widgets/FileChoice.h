#pragma once
#include "foundation/String.h"

namespace FX {
class FXWindow;
}

namespace Tallymoor {

/// Lets the user choose a file, from the last transfer folder on, which becomes that of the choice. The
/// patterns are the toolkit's: "Charts (*.svg,*.pdf)" in lines. The name stands in the field at first.
/// Whether there is such a file is left to the caller. Empty when the user cancelled.
String chooseFile(FX::FXWindow* owner, const String& title, const String& patterns,
                  const String& name = String());

/// The same for a folder, from the home folder on.
String chooseFolder(FX::FXWindow* owner, const String& title);

} // namespace Tallymoor
