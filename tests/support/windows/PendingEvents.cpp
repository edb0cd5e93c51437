#include "support/windows/PendingEvents.h"
#include <X11/Xlib.h>

namespace Tallymoor {

namespace {

bool awaitsLayout(FXApp& app) {
  for (FXWindow* window = app.getRootWindow()->getFirst(); window; window = window->getNext())
    if (app.hasChore(window, FXShell::ID_LAYOUT))
      return true;
  return false;
}

} // namespace

void handlePendingEvents(FXApp& app) {
  auto* display = static_cast<Display*>(app.getDisplay());
  do {
    app.runWhileEvents();
    app.flush(TRUE);
  } while (XEventsQueued(display, QueuedAlready) > 0 || awaitsLayout(app));
}

} // namespace Tallymoor
