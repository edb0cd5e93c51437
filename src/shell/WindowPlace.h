#pragma once
#include <fx.h>

namespace Tallymoor {

/// Where the main window stands and how large it is, from one run to the next, kept in the settings. GUI
/// thread, under the big mutex.
class WindowPlace {
public:
  explicit WindowPlace(FXTopWindow& window) : m_window(window) {}

  /// As it was last.
  void restore();
  /// Brings all of it onto the screen.
  void keepOnScreen();
  /// Takes it back to the least size; gives the size that it then has.
  FXSize heldToMinimum(const FXSize& size, FXint leastWidth);
  /// Of a window in sight. What is negative is no choice of the user's and not kept.
  void remember(const FXPoint& place, const FXSize& size);

private:
  FXTopWindow& m_window;
};

} // namespace Tallymoor
