#pragma once
#include <fx.h>

namespace Tallymoor {

/// The window's focused widget, even if the display has not given the focus to the window.
inline FXWindow* focused(FXWindow& window) {
  FXWindow* widget = &window;
  while (widget->getFocus())
    widget = widget->getFocus();
  return widget;
}

} // namespace Tallymoor
