#include "entry/EditDividendsDialog.h"
#include "entry/ReceiveDividendsPanel.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

FXIMPLEMENT(EditDividendsDialog, Dialog, nullptr, 0)

namespace {

String captionFor(const XMLDividendEvent& dividendEvent) {
  return u"Edit dividend of " + dividendEvent.code() + u" on " +
         dividendEvent.received().toString(DATE_DISPLAY_LOCAL);
}

} // namespace

EditDividendsDialog::EditDividendsDialog(FXWindow* owner, const SharePortfolioUser& portfolio,
                                         const XMLDividendEvent& dividendEvent)
    : Dialog(owner, captionFor(dividendEvent), String()),
      m_panel(new ReceiveDividendsPanel(contents(), &portfolio)) {
  m_panel->showDividend(dividendEvent);
  setFirstFocus(m_panel->firstField());
}

bool EditDividendsDialog::validate() {
  return m_panel->validate();
}

} // namespace Tallymoor
