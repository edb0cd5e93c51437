#pragma once

namespace Tallymoor::Fuzz {

/// Ends the program, as a crash would, when something that must hold for any input does not.
void require(bool holds, const char* what);

} // namespace Tallymoor::Fuzz
