#pragma once
#include "shell/CommandTable.h"
#include <optional>

namespace Tallymoor {

class TallymoorWindow;
class WindowIcons;

/// Whether the program is online: the button that shows it and changes it. GUI thread, under the big mutex.
class OnlineController {
public:
  OnlineController(TallymoorWindow& window, const WindowIcons& icons) : m_window(window), m_icons(icons) {}

  Command command();
  void buildButton(FXComposite* parent, const Command& command);
  /// Once the font is on the display.
  void fitButton();
  FXButton* button() const { return m_button; }

  /// Called often: shows what has changed by itself.
  void updateButton();

private:
  void change();
  void goOffline();
  void reconnect();
  void showFailure();
  void show();
  void abortBackgroundFetches();

  TallymoorWindow& m_window;
  const WindowIcons& m_icons;
  FXButton* m_button = nullptr;
  std::optional<bool> m_shown; ///< what the button shows
  bool m_changing = false;
};

} // namespace Tallymoor
