#include "foundation/FaultTranslator.h"
#include "foundation/Exception.h"
#include <cinttypes>
#include <cstdio>

namespace Tallymoor {

String faultText(std::uint32_t code, std::uintptr_t address) {
  char text[96];
  std::snprintf(text, sizeof text, "C Exception number 0x%.8" PRIX32 " was thrown from 0x%.8" PRIX32, code,
                static_cast<std::uint32_t>(address));
  return String(text);
}

void throwFault(std::uint32_t code, std::uintptr_t address) {
  throw C_Exception(faultText(code, address));
}

} // namespace Tallymoor
