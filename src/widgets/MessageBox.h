#pragma once
#include "foundation/String.h"
#include <fx.h>

namespace Tallymoor {

/// One of the toolkit's boxes, such as FXMessageBox::question.
using MessageBox = FXuint (*)(FXWindow* owner, FXuint buttons, const char* caption, const char* format, ...);

/// Shows the text in a box above the window or dialog in front, under the main window's title, and gives the
/// button clicked. Where no dialog may be opened, the text goes to the status line and the answer is
/// MBOX_CLICKED_CANCEL.
FXuint showMessageBox(MessageBox box, FXuint buttons, const String& text);

} // namespace Tallymoor
