#pragma once

namespace Tallymoor::Fuzz {

/// Aborts the program if a guarantee is violated.
void require(bool holds, const char* what);

} // namespace Tallymoor::Fuzz
