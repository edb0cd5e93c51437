#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// What a user should know of how the program reads a text of a page as a number: that nothing is read, that
/// something behind the number is passed over, or that a comma is not taken for a decimal sign. Empty when
/// the text reads as it looks.
String remarkOnNumber(const String& text);

/// True when the text begins with a number for the program, be it 0.
bool beginsWithNumber(const String& text);

} // namespace Tallymoor
