#pragma once
#include "widgets/Dialog.h"

namespace Tallymoor {

class BuySharesPanel;

/// Asks for a new purchase; the caller makes it from panel() when execute() gives 1.
class BuySharesDialog : public Dialog {
  FXDECLARE(BuySharesDialog)
public:
  explicit BuySharesDialog(FXWindow* owner, const String& initialCode = String());

  bool validate() override;
  BuySharesPanel* panel() const { return m_panel; }

protected:
  BuySharesDialog() {}

private:
  BuySharesPanel* m_panel = nullptr;
};

} // namespace Tallymoor
