#include "entry/IntroPanel.h"
#include "widgets/MainWindow.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXIMPLEMENT(IntroPanel, GUIPanel, nullptr, 0)

namespace {

const char16_t* const DOCUMENTS[] = {
    u"->   Cash reserve total at your nominated start date",
    u"->   Contract notes or records of shares held at\nyour start date",
    u"->   Contract notes or records of shares bought and sold\nsince the start date",
    u"->   Records of dividends received since the start date",
    u"->   Records of interest received since the start date",
    u"->   Records of cash deposits (withdrawals) into (from) your\ncash reserve since the start date.",
};

} // namespace

IntroPanel::IntroPanel(FXComposite* parent)
    : GUIPanel(parent, u"Welcome to Brindlecove\nTallymoor", String()) {
  addText(u"This wizard will guide you through the process of \n"
          u"setting up Tallymoor with your existing portfolio.");
  addText(u"Before you start, please choose a date from which to start\n"
          u"fully recording all your share activities in a portfolio or\n"
          u"portfolios. We suggest the start of the current financial year.");
  auto* heading = new FXLabel(this, "Documents/Information you will need:", nullptr, JUSTIFY_LEFT);
  heading->setFont(MainWindow::Instance().boldFont());
  for (const char16_t* document : DOCUMENTS)
    addText(document);
}

void IntroPanel::addText(const String& text) {
  new FXLabel(this, labelText(text), nullptr, JUSTIFY_LEFT);
}

} // namespace Tallymoor
