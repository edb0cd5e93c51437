#pragma once
#include "widgets/GUIPanel.h"

namespace Tallymoor {

/// The first page of the start-up wizard: what it does, and the documents that the user needs at hand.
class IntroPanel : public GUIPanel {
  FXDECLARE(IntroPanel)
public:
  explicit IntroPanel(FXComposite* parent);

protected:
  IntroPanel() {}

private:
  void addText(const String& text);
};

} // namespace Tallymoor
