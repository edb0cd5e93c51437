#include "widgets/ContextMenu.h"
#include "widgets/ToolkitText.h"
#include <fxkeys.h>

namespace Tallymoor {

ContextMenu::ContextMenu(FXWindow* owner, FXObject* target) : m_pane(owner), m_target(target) {}

void ContextMenu::addCommand(const String& text, FXSelector identifier) {
  new FXMenuCommand(&m_pane, labelText(text), nullptr, m_target, identifier);
}

void ContextMenu::addSeparator() {
  new FXMenuSeparator(&m_pane);
}

void ContextMenu::run(FXint screenX, FXint screenY) {
  m_pane.create();
  m_pane.popup(nullptr, screenX, screenY);
  m_pane.grabKeyboard();
  m_pane.getApp()->runModalWhileShown(&m_pane);
  m_pane.ungrabKeyboard();
}

bool isMenuKey(const FXEvent& event) {
  return event.code == KEY_Menu || (event.code == KEY_F10 && (event.state & SHIFTMASK));
}

} // namespace Tallymoor
