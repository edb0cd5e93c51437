#include "entry/GetFloatDialog.h"
#include "entry/GetFloatPanel.h"

namespace Tallymoor {

FXDEFMAP(GetFloatDialog)
GetFloatDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, FXDialogBox::ID_ACCEPT, GetFloatDialog::onOK),
};

FXIMPLEMENT(GetFloatDialog, Dialog, GetFloatDialogMap, ARRAYNUMBER(GetFloatDialogMap))

GetFloatDialog::GetFloatDialog(FXWindow* owner, const String& title, const String& heading)
    : Dialog(owner, title, heading), m_panel(new GetFloatPanel(contents(), title, heading)) {
  setFirstFocus(m_panel->firstField());
}

bool GetFloatDialog::validate() {
  return m_panel->validate();
}

long GetFloatDialog::onOK(FXObject* sender, FXSelector selector, void* data) {
  return acceptIfValid(u"GetFloatDialog::onOK failed.", sender, selector, data);
}

} // namespace Tallymoor
