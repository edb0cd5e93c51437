#include "shell/DisplayEnd.h"
#include <X11/Xlib.h>
#include <unistd.h>

namespace Tallymoor {

void endWithDisplay() {
  // The handler may not return. No destructors: other threads are still at work.
  XSetIOErrorHandler([](Display*) -> int { ::_exit(DISPLAY_ENDED_STATUS); });
}

} // namespace Tallymoor
