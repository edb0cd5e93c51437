#pragma once
#include "widgets/Dialog.h"

namespace Tallymoor {

class PriceEntryPanel;

/// Asks for the price of a stock on a day; the caller stores it from panel() when execute() gives 1.
class PriceEntryDialog : public Dialog {
  FXDECLARE(PriceEntryDialog)
public:
  PriceEntryDialog(FXWindow* owner, const String& code);

  bool validate() override;
  PriceEntryPanel* panel() const { return m_panel; }

  long onOK(FXObject*, FXSelector, void*);

protected:
  PriceEntryDialog() {}

private:
  PriceEntryPanel* m_panel = nullptr;
};

} // namespace Tallymoor
