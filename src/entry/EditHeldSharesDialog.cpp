#include "entry/EditHeldSharesDialog.h"
#include "entry/BuySharesPanel.h"
#include "xml/Leaves.h"

namespace Tallymoor {

FXIMPLEMENT(EditHeldSharesDialog, Dialog, nullptr, 0)

namespace {

String captionFor(const String& code, const Date& date) {
  return u"Edit share purchase for " + code + u" on " + date.toString(DATE_DISPLAY_LOCAL);
}

} // namespace

EditHeldSharesDialog::EditHeldSharesDialog(FXWindow* owner, const String& code, const XMLElement& buyEvent)
    : Dialog(owner, captionFor(code, dateValue(buyEvent, u"BuyDate")), String()),
      m_panel(new BuySharesPanel(contents())) {
  m_panel->showPurchase(code, dateValue(buyEvent, u"BuyDate"), doubleValue(buyEvent, u"NumHeld"),
                        doubleValue(buyEvent, u"BuyPrice"), doubleValue(buyEvent, u"Brokerage"),
                        textValue(buyEvent, u"Comment"));
  setFirstFocus(m_panel->firstField());
}

bool EditHeldSharesDialog::validate() {
  return m_panel->validate();
}

} // namespace Tallymoor
