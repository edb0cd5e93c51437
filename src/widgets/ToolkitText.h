#pragma once
#include "foundation/String.h"
#include <fx.h>

namespace Tallymoor {

/// Text on its way to the toolkit and back. The toolkit's own text is UTF-8; a text that comes back is
/// decoded again.
FXString toFox(const String& text);
String fromFox(const FXString& text);

/// A text for a label, button, tab or menu entry that is to be shown unchanged: there "&" marks a hot key,
/// and a tab would begin the tool tip. Line ends stay.
FXString labelText(const String& text);

/// A text for a message box, where it is read as a printf format and then as a label: "%%" shows as one
/// percent sign, a lone "%" shows as itself, and no conversion can ever ask for an argument. It is made to
/// fit the screen by fittedMessage.
FXString messageBoxText(const String& text);

} // namespace Tallymoor
