#include "support/windows/PendingEvents.h"
#include <X11/Xlib.h>
#include <sys/select.h>

namespace Tallymoor {

namespace {

// Members of the application that have no accessor. The arguments of an explicit instantiation may name
// private members; the friend that it defines hands them out.
struct Chores {};
struct Repaints {};
struct Inputs {};
struct LastInput {};

FXChore* get(Chores, const FXApp& app);
FXRepaint* get(Repaints, const FXApp& app);
void* get(Inputs, const FXApp& app);
FXint get(LastInput, const FXApp& app);

template <class Name, class Type, Type FXApp::*member>
struct Access {
  friend Type get(Name, const FXApp& app) { return app.*member; }
};
template struct Access<Chores, FXChore*, &FXApp::chores>;
template struct Access<Repaints, FXRepaint*, &FXApp::repaints>;
template struct Access<Inputs, void*, &FXApp::r_fds>;
template struct Access<LastInput, FXint, &FXApp::maxinput>;

/// True when another thread has woken the loop.
bool hasInput(const FXApp& app) {
  const auto* inputs = static_cast<const fd_set*>(get(Inputs(), app));
  const FXint last = get(LastInput(), app);
  if (!inputs || last < 0)
    return false;
  fd_set ready = *inputs;
  timeval noWait{};
  return select(last + 1, &ready, nullptr, nullptr, &noWait) > 0;
}

} // namespace

void handlePendingEvents(FXApp& app) {
  auto* display = static_cast<Display*>(app.getDisplay());
  do {
    app.runWhileEvents();
    app.flush(TRUE);
  } while (XEventsQueued(display, QueuedAlready) > 0 || hasInput(app) || get(Chores(), app) ||
           get(Repaints(), app));
}

} // namespace Tallymoor
