#include "widgets/TabWalk.h"
#include <algorithm>
#include <fxkeys.h>
#include <vector>

namespace Tallymoor {

namespace {

/// The widgets in sight that take the keyboard, in the order of the tab key. The parts of one that takes it
/// belong to it.
void addTabStops(FXWindow& in, std::vector<FXWindow*>& stops) {
  for (FXWindow* child = in.getFirst(); child; child = child->getNext()) {
    if (!child->shown() || child->isShell() || dynamic_cast<FXMenuBar*>(child))
      continue;
    if (child->isEnabled() && child->canFocus())
      stops.push_back(child);
    else
      addTabStops(*child, stops);
  }
}

} // namespace

FXWindow* widgetWithKeyboard(FXWindow& window) {
  FXWindow* widget = &window;
  while (widget->getFocus())
    widget = widget->getFocus();
  return widget;
}

bool isTab(const FXEvent& key) {
  return key.code == KEY_Tab || key.code == KEY_ISO_Left_Tab;
}

bool isBackTab(const FXEvent& key) {
  return key.code == KEY_ISO_Left_Tab || (key.code == KEY_Tab && (key.state & SHIFTMASK));
}

bool walkWithTab(FXWindow& window, bool back) {
  std::vector<FXWindow*> stops;
  addTabStops(window, stops);
  if (stops.empty())
    return false;
  if (back)
    std::reverse(stops.begin(), stops.end());
  const auto here = std::find(stops.begin(), stops.end(), widgetWithKeyboard(window));
  (here == stops.end() || here + 1 == stops.end() ? stops.front() : *(here + 1))->setFocus();
  return true;
}

} // namespace Tallymoor
