#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// What is known of a code's price, now or on the view date, without asking anyone, for a form that opens
/// with the code; 0 when nothing is.
double knownPrice(const String& code);

} // namespace Tallymoor
