#include "support/windows/RealKeys.h"
#include "support/windows/PendingEvents.h"
#include <X11/Xlib.h>
#include <algorithm>
#include <stdexcept>

namespace Tallymoor {

namespace {

/// More than any window has.
constexpr int MOST_TAB_STOPS = 300;

FXWindow& receiver(FXApp& app, FXWindow& mainWindow) {
  FXWindow* modal = app.getModality() == MODAL_FOR_NONE ? nullptr : app.getModalWindow();
  return modal && modal->shown() ? *modal : mainWindow;
}

} // namespace

void RealKeys::send(FXWindow& to, FXuint code, FXuint state, bool down) {
  auto* display = static_cast<Display*>(m_app.getDisplay());
  XKeyEvent event{};
  event.type = down ? KeyPress : KeyRelease;
  event.display = display;
  event.window = static_cast<Window>(to.id());
  event.root = DefaultRootWindow(display);
  event.time = CurrentTime;
  event.state = state;
  event.keycode = XKeysymToKeycode(display, code == KEY_ISO_Left_Tab ? KeySym(KEY_Tab) : KeySym(code));
  event.same_screen = True;
  if (event.keycode == 0)
    throw std::runtime_error("the keyboard has no such key");
  XSendEvent(display, event.window, False, NoEventMask, reinterpret_cast<XEvent*>(&event));
}

void RealKeys::press(FXWindow& mainWindow, FXuint code, FXuint state) {
  FXWindow& to = receiver(m_app, mainWindow);
  send(to, code, state, true);
  handlePendingEvents(m_app);
  // A popup may have closed; the release of its key goes to the window below.
  FXWindow& then = receiver(m_app, mainWindow);
  send(then, code, state, false);
  handlePendingEvents(m_app);
}

void RealKeys::press(FXWindow& mainWindow, FXuint code, FXuint state, int times) {
  for (int i = 0; i < times; ++i)
    press(mainWindow, code, state);
}

FXWindow& focusedWidget(FXWindow& shell) {
  FXWindow* widget = &shell;
  while (widget->getFocus())
    widget = widget->getFocus();
  return *widget;
}

std::vector<FXWindow*> tabStops(RealKeys& keys, FXWindow& mainWindow, FXWindow& shell) {
  std::vector<FXWindow*> stops;
  for (int i = 0; i < MOST_TAB_STOPS; ++i) {
    FXWindow* const now = &focusedWidget(shell);
    if (std::find(stops.begin(), stops.end(), now) != stops.end())
      break;
    stops.push_back(now);
    keys.press(mainWindow, KEY_Tab);
  }
  return stops;
}

} // namespace Tallymoor
