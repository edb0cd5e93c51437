#pragma once
#include <functional>
#include <fx.h>
#include <fxkeys.h>
#include <vector>

namespace Tallymoor {

/// The keyboard as the display server has it: each key is sent to the server, which hands it to the window,
/// so that it takes the toolkit's whole road with its grabs, focus and accelerators. The keys have been
/// handled when an operation returns.
class RealKeys {
public:
  explicit RealKeys(FXApp& app) : m_app(app) {}

  /// A key, by the toolkit's KEY_ code, down and up, to the modal window or else to this one.
  void press(FXWindow& mainWindow, FXuint code, FXuint state = 0);
  /// The same key so many times.
  void press(FXWindow& mainWindow, FXuint code, FXuint state, int times);

private:
  void send(FXWindow& to, FXuint code, FXuint state, bool down);

  FXApp& m_app;
};

/// The widget that has the keyboard in this window; the window itself when none has.
FXWindow& focusedWidget(FXWindow& shell);

/// All widgets that the tab key comes to, from the one that has the keyboard now until it comes round.
std::vector<FXWindow*> tabStops(RealKeys& keys, FXWindow& mainWindow, FXWindow& shell);

} // namespace Tallymoor
