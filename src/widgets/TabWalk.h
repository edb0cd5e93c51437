#pragma once
#include <fx.h>

namespace Tallymoor {

/// The widget of a window that has the keyboard; the window itself when none has.
FXWindow* widgetWithKeyboard(FXWindow& window);

/// Whether a key is the tab key, forwards or back, and whether it leads back.
bool isTab(const FXEvent& key);
bool isBackTab(const FXEvent& key);

/// What the tab key does where the toolkit's own walk leaves parts of a window out: the keyboard goes to the
/// next widget in sight that takes it, or to the one before, round and round. False when there is none.
bool walkWithTab(FXWindow& window, bool back);

} // namespace Tallymoor
