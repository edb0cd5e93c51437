#pragma once
#include <fx.h>

namespace Tallymoor {

/// Runs the event loop until the display server has sent all it had to, every thread that woke the loop was
/// heard, and no chore (as a layout) or repaint is left. A single run of the toolkit's loop ends earlier: it
/// returns after a chore, an input or a step of an update of the widgets.
void handlePendingEvents(FXApp& app);

} // namespace Tallymoor
