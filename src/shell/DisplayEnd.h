#pragma once

namespace Tallymoor {

/// What the program leaves with when its display has gone.
constexpr int DISPLAY_ENDED_STATUS = 1;

/// From now on the program leaves at once, without a word, when the X server ends or cannot be reached any
/// more: there is nobody to ask, and a command may be half done, so nothing is saved. Every change is in the
/// journal, from which the next start makes it again. Call it when the toolkit has opened the display.
void endWithDisplay();

} // namespace Tallymoor
