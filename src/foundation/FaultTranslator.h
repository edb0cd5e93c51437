#pragma once
#include "foundation/String.h"
#include <cstdint>

namespace Tallymoor {

/// The text of a processor fault: code and address with eight capital hexadecimal digits each, of the address
/// the lower ones.
String faultText(std::uint32_t code, std::uintptr_t address);

/// Throws the C_Exception for a fault. To be called on the ordinary flow of a program, which found the fault
/// or was told of it: a signal handler must not throw.
[[noreturn]] void throwFault(std::uint32_t code, std::uintptr_t address);

} // namespace Tallymoor
