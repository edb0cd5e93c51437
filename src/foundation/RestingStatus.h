#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// What the status line shows while nothing happens: "Ready.", or that a past day is shown. Under the big
/// mutex.
String restingStatusText();

} // namespace Tallymoor
