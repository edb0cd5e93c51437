#pragma once
#include "widgets/Dialog.h"

namespace Tallymoor {

class BuySharesPanel;
class SharePortfolioUser;
class XMLBuyEvent;

/// Changes a recorded purchase; the caller edits the record from panel() when execute() gives 1.
class EditHeldSharesDialog : public Dialog {
  FXDECLARE(EditHeldSharesDialog)
public:
  /// The purchase is one of the portfolio; both are only read.
  EditHeldSharesDialog(FXWindow* owner, const SharePortfolioUser& portfolio, const XMLBuyEvent& buyEvent);

  bool validate() override;
  BuySharesPanel* panel() const { return m_panel; }

protected:
  EditHeldSharesDialog() {}

private:
  BuySharesPanel* m_panel = nullptr;
};

} // namespace Tallymoor
