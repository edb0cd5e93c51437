#include "entry/PriceEntryDialog.h"
#include "entry/PriceEntryPanel.h"

namespace Tallymoor {

FXDEFMAP(PriceEntryDialog)
PriceEntryDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, FXDialogBox::ID_ACCEPT, PriceEntryDialog::onOK),
};

FXIMPLEMENT(PriceEntryDialog, Dialog, PriceEntryDialogMap, ARRAYNUMBER(PriceEntryDialogMap))

PriceEntryDialog::PriceEntryDialog(FXWindow* owner, const String& code)
    : Dialog(owner, u"Type a price",
             u"A price that you type counts for its day, whatever the sources of prices say."),
      m_panel(new PriceEntryPanel(contents(), code)) {
  setFirstFocus(m_panel->firstField());
}

bool PriceEntryDialog::validate() {
  return m_panel->validate();
}

long PriceEntryDialog::onOK(FXObject* sender, FXSelector selector, void* data) {
  return acceptIfValid(u"PriceEntryDialog::onOK failed.", sender, selector, data);
}

} // namespace Tallymoor
