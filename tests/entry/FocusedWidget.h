#pragma once
#include <fx.h>

namespace Tallymoor {

/// The widget that gets the keys of its window, whether or not the display has given that window the focus.
inline FXWindow* focused(FXWindow& window) {
  FXWindow* widget = &window;
  while (widget->getFocus())
    widget = widget->getFocus();
  return widget;
}

} // namespace Tallymoor
