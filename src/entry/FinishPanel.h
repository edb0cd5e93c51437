#pragma once
#include "widgets/GUIPanel.h"

namespace Tallymoor {

/// The last page of the start-up wizard.
class FinishPanel : public GUIPanel {
  FXDECLARE(FinishPanel)
public:
  explicit FinishPanel(FXComposite* parent);

protected:
  FinishPanel() {}
};

} // namespace Tallymoor
