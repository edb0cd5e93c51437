#pragma once
#include <fx.h>

namespace Tallymoor {

/// Runs the event loop until the display server has sent all it had to and every window is laid out. A single
/// run of the toolkit's loop can end earlier: it returns after each timer, chore or step of an update.
void handlePendingEvents(FXApp& app);

} // namespace Tallymoor
