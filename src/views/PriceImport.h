#pragma once
#include "foundation/String.h"

namespace FX {
class FXWindow;
}

namespace Tallymoor {

/// Lets the user choose a CSV file with past prices of a stock, asks what its texts leave open, stores them
/// and tells what was read. GUI thread, under the big mutex. Throws Exception for a file that can't be read.
void importPrices(FX::FXWindow* owner, const String& code);

} // namespace Tallymoor
