#pragma once
#include <fx.h>

namespace Tallymoor {

/// Whether the display server shows the window: it and all that it stands in are mapped. The toolkit's own
/// shown() only says that they are meant to be.
bool isOnDisplay(const FXWindow& window);

/// Another size as a window manager gives it: the toolkit hears of it by the server's event alone.
void resizeOnDisplay(const FXWindow& window, unsigned width, unsigned height);

} // namespace Tallymoor
