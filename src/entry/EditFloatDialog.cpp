#include "entry/EditFloatDialog.h"
#include "engine/CashBalance.h"
#include "entry/GetFloatPanel.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

FXIMPLEMENT(EditFloatDialog, GetFloatDialog, nullptr, 0)

EditFloatDialog::EditFloatDialog(FXWindow* owner, const String& title, const String& heading,
                                 const XMLElement& portfolio, const XMLElement& cashEvent)
    : GetFloatDialog(owner, title, heading) {
  const bool isCredit = isCreditType(longValue(cashEvent, u"Type"));
  panel()->setCashBefore(cashBalance(portfolio, Date()) - effectOnBalance(cashEvent, Date()), isCredit);
  panel()->reset(doubleValue(cashEvent, u"Value"), dateValue(cashEvent, u"Date"));
  panel()->setText(textValue(cashEvent, u"Description"));
}

} // namespace Tallymoor
