#pragma once
#include "foundation/String.h"
#include <fx.h>

namespace Tallymoor {

/// A popup menu at the mouse, or at what the keys have chosen. Lives in the handler that opens it; the chosen
/// command reaches the target before run returns.
class ContextMenu {
public:
  /// The target gets SEL_COMMAND with the identifier of the chosen entry. Neither is owned.
  ContextMenu(FXWindow* owner, FXObject* target);
  ContextMenu(const ContextMenu&) = delete;
  ContextMenu& operator=(const ContextMenu&) = delete;

  /// The text is shown as it is: "&" marks no hot key.
  void addCommand(const String& text, FXSelector identifier);
  void addSeparator();
  /// Opens the menu at this screen position, with the keyboard, and returns when it has closed.
  void run(FXint screenX, FXint screenY);

private:
  FXMenuPane m_pane;
  FXObject* m_target;
};

/// The keys that open what a right click opens: the menu key, or Shift+F10 on keyboards without one.
bool isMenuKey(const FXEvent& event);

} // namespace Tallymoor
