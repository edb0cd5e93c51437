#pragma once
#include "entry/GetFloatDialog.h"

namespace Tallymoor {

class XMLCashEvent;
class XMLSharePortfolio;

/// Changes a recorded amount of cash; the caller edits the record from panel() when execute() gives 1.
class EditFloatDialog : public GetFloatDialog {
  FXDECLARE(EditFloatDialog)
public:
  /// The entry is one of the portfolio; both are only read, and only here.
  EditFloatDialog(FXWindow* owner, const String& title, const String& heading,
                  const XMLSharePortfolio& portfolio, const XMLCashEvent& cashEvent);

protected:
  EditFloatDialog() {}
};

} // namespace Tallymoor
