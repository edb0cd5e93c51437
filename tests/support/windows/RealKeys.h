#pragma once
#include <functional>
#include <fx.h>
#include <fxkeys.h>
#include <vector>

namespace Tallymoor {

/// Keyboard input through the display server, so that each key takes the toolkit's complete path with grabs,
/// focus and accelerators. Each operation returns after the keys were handled.
class RealKeys {
public:
  explicit RealKeys(FXApp& app) : m_app(app) {}

  /// Presses and releases a key (a KEY_ code of the toolkit) in the modal window, or else in this one.
  void press(FXWindow& mainWindow, FXuint code, FXuint state = 0);
  /// Presses the key several times.
  void press(FXWindow& mainWindow, FXuint code, FXuint state, int times);

private:
  void send(FXWindow& to, FXuint code, FXuint state, bool down);

  FXApp& m_app;
};

/// The widget with the focus in this window; the window itself if there is none.
FXWindow& focusedWidget(FXWindow& shell);

/// All widgets reached by the Tab key, from the focused one until it is reached again.
std::vector<FXWindow*> tabStops(RealKeys& keys, FXWindow& mainWindow, FXWindow& shell);

} // namespace Tallymoor
