#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// Why the program does not read a text of a page as a number. Empty when it does.
String remarkOnNumber(const String& text);

/// The same for a number of shares, which may be shortened.
String remarkOnVolume(const String& text);

/// True when the text begins with a number for the program, be it 0.
bool beginsWithNumber(const String& text);

} // namespace Tallymoor
