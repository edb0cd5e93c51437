#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// Explains why the program can't read a text as a number. Empty if it can.
String remarkOnNumber(const String& text);

/// The same for a volume, which may be abbreviated.
String remarkOnVolume(const String& text);

/// True if the program reads a number at the start of the text, even 0.
bool beginsWithNumber(const String& text);

} // namespace Tallymoor
