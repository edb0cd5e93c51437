#include "entry/EditDividendsDialog.h"
#include "entry/ReceiveDividendsPanel.h"
#include "xml/Leaves.h"

namespace Tallymoor {

FXIMPLEMENT(EditDividendsDialog, Dialog, nullptr, 0)

namespace {

String captionFor(const XMLElement& dividendEvent) {
  return u"Edit dividend of " + textValue(dividendEvent, u"Code") + u" on " +
         dateValue(dividendEvent, u"ReceiveDate").toString(DATE_DISPLAY_LOCAL);
}

} // namespace

EditDividendsDialog::EditDividendsDialog(FXWindow* owner, const SharePortfolioUser& portfolio,
                                         const XMLElement& dividendEvent)
    : Dialog(owner, captionFor(dividendEvent), String()),
      m_panel(new ReceiveDividendsPanel(contents(), &portfolio)) {
  m_panel->showDividend(dividendEvent);
  setFirstFocus(m_panel->firstField());
}

bool EditDividendsDialog::validate() {
  return m_panel->validate();
}

} // namespace Tallymoor
