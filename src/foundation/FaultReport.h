#pragma once
#include "foundation/String.h"
#include <cstdint>

namespace Tallymoor {

/// The text of a processor fault. Code and address have eight upper-case hexadecimal digits each; of the
/// address, the low 32 bits.
String faultText(std::uint32_t code, std::uintptr_t address);

/// Installs handlers that write faultText() to standard error on a processor fault, with the signal number as
/// code. The process then ends by the default action, because a signal handler can't throw. Handlers
/// installed by others (a sanitizer, for example) are kept. May be called repeatedly.
void reportFaults();

} // namespace Tallymoor
