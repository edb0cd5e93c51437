#pragma once
#include "foundation/String.h"

namespace Tallymoor {

// What the menu and the history of changes call a change, apart from its first words.

/// "100 ABC.AX"; a number that is not whole with its decimals.
String sharesText(double number, const String& code);

} // namespace Tallymoor
