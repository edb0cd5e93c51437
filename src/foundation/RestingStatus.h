#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// The status line's default text: "Ready.", or the view date. Call it under the big mutex.
String restingStatusText();

} // namespace Tallymoor
