#include "entry/EditFloatDialog.h"
#include "entry/GetFloatPanel.h"
#include "xml/Leaves.h"

namespace Tallymoor {

FXIMPLEMENT(EditFloatDialog, GetFloatDialog, nullptr, 0)

EditFloatDialog::EditFloatDialog(FXWindow* owner, const String& title, const String& heading,
                                 const XMLElement& cashEvent)
    : GetFloatDialog(owner, title, heading) {
  panel()->reset(doubleValue(cashEvent, u"Value"), dateValue(cashEvent, u"Date"));
  panel()->setText(textValue(cashEvent, u"Description"));
}

} // namespace Tallymoor
