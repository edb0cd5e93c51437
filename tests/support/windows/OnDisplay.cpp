#include "support/windows/OnDisplay.h"
#include <X11/Xlib.h>

namespace Tallymoor {

bool isOnDisplay(const FXWindow& window) {
  XWindowAttributes attributes{};
  return XGetWindowAttributes(static_cast<Display*>(window.getApp()->getDisplay()),
                              static_cast<Window>(window.id()), &attributes) != 0 &&
         attributes.map_state == IsViewable;
}

void resizeOnDisplay(const FXWindow& window, unsigned width, unsigned height) {
  XResizeWindow(static_cast<Display*>(window.getApp()->getDisplay()), static_cast<Window>(window.id()), width,
                height);
  window.getApp()->flush(TRUE);
}

} // namespace Tallymoor
