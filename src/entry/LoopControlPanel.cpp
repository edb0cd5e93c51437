#include "entry/LoopControlPanel.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXIMPLEMENT(LoopControlPanel, GUIPanel, nullptr, 0)

LoopControlPanel::LoopControlPanel(FXComposite* parent) : GUIPanel(parent, String(), String()) {
  constexpr FXint INDENT = 20; // below the text of the check button
  m_text = new FXLabel(this, FXString(), nullptr, JUSTIFY_LEFT);
  // As wide as the longest text: the window is made before the texts are known.
  constexpr FXint WIDEST_TEXT = 440;
  new FXFrame(this, LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT, 0, 0, scaledToText(WIDEST_TEXT), 10);
  m_finished = new FXCheckButton(this, FXString(), nullptr, 0, CHECKBUTTON_NORMAL | JUSTIFY_LEFT);
  m_help = new FXLabel(this, FXString(), nullptr, JUSTIFY_LEFT, 0, 0, 0, 0, INDENT);
}

void LoopControlPanel::showSection(const String& title, const String& text, const String& question,
                                   const String& help) {
  setTexts(title, String());
  m_text->setText(labelText(text));
  m_finished->setText(labelText(question));
  m_help->setText(labelText(help));
}

bool LoopControlPanel::isFinished() const {
  return m_finished->getCheck() == TRUE;
}

void LoopControlPanel::setFinished(bool finished) {
  m_finished->setCheck(finished);
}

} // namespace Tallymoor
