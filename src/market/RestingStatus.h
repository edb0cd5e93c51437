#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// The status line's default text: "Ready.", or the view date; and if prices are made up, or no source is on,
/// a sentence that says so. Call it under the big mutex.
String restingStatusText();

} // namespace Tallymoor
