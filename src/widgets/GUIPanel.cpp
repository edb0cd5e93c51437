#include "widgets/GUIPanel.h"
#include "foundation/Exception.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

FXIMPLEMENT(GUIPanel, FXVerticalFrame, nullptr, 0)

GUIPanel::GUIPanel(FXComposite* parent, const String& title, const String& description)
    : FXVerticalFrame(parent, LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 0, 0, 0, 0), m_title(title),
      m_description(description) {}

bool GUIPanel::validate() {
  return true;
}

void GUIPanel::setTexts(const String& title, const String& description) {
  m_title = title;
  m_description = description;
}

bool GUIPanel::runChecks(const std::function<bool()>& checks) {
  try {
    return checks();
  } catch (const Exception&) {
    MainWindow::error(u"There was a problem validating your input");
    return false;
  }
}

} // namespace Tallymoor
