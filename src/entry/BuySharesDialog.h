#pragma once
#include "widgets/Dialog.h"

namespace Tallymoor {

class BuySharesPanel;
class SharePortfolioUser;

/// Asks for a new purchase; the caller makes it from panel() when execute() gives 1.
class BuySharesDialog : public Dialog {
  FXDECLARE(BuySharesDialog)
public:
  /// The portfolio is only read.
  BuySharesDialog(FXWindow* owner, const SharePortfolioUser& portfolio, const String& initialCode = String());

  bool validate() override;
  BuySharesPanel* panel() const { return m_panel; }

protected:
  BuySharesDialog() {}

private:
  BuySharesPanel* m_panel = nullptr;
};

} // namespace Tallymoor
