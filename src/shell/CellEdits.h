#pragma once

namespace FX {
class FXWindow;
}

namespace Tallymoor {

/// Accepts what is being typed into a cell of any table in the window, as if the user had pressed Return.
void finishEdits(FX::FXWindow& window);

} // namespace Tallymoor
