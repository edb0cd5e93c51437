#include "entry/FinishPanel.h"

namespace Tallymoor {

FXIMPLEMENT(FinishPanel, GUIPanel, nullptr, 0)

FinishPanel::FinishPanel(FXComposite* parent) : GUIPanel(parent, u"Completing Tallymoor Setup", String()) {
  new FXLabel(this,
              "You have completed the initial setup of Tallymoor\n"
              "and are ready to use it to keep records of\n"
              "your share portfolios. Enjoy!",
              nullptr, JUSTIFY_LEFT);
}

} // namespace Tallymoor
