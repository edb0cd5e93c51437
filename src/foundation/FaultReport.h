#pragma once
#include "foundation/String.h"
#include <cstdint>

namespace Tallymoor {

/// The text of a processor fault: code and address with eight capital hexadecimal digits each, of the address
/// the lower ones.
String faultText(std::uint32_t code, std::uintptr_t address);

/// From now on a processor fault on any thread writes its text to the standard error, with the signal as
/// code, before it ends the process as it always does: a signal handler must not throw, so there is no way
/// back into the program. A handler that somebody else has put in place, such as a sanitizer's, stays. May be
/// called again.
void reportFaults();

} // namespace Tallymoor
