#pragma once
#include <fx.h>

namespace Tallymoor {

/// True if the window and all its ancestors are mapped on the display server. FXWindow::shown() only reflects
/// the request.
bool isOnDisplay(const FXWindow& window);

/// Resizes the window as a window manager does: the toolkit is informed only by the server's event.
void resizeOnDisplay(const FXWindow& window, unsigned width, unsigned height);

} // namespace Tallymoor
