#pragma once
#include "widgets/Dialog.h"

namespace Tallymoor {

class SellSharesPanel;
class SharePortfolioUser;

/// Asks for a sale; the caller makes it from panel() when execute() gives 1.
class SellSharesDialog : public Dialog {
  FXDECLARE(SellSharesDialog)
public:
  SellSharesDialog(FXWindow* owner, const SharePortfolioUser& portfolio,
                   const String& initialCode = String());

  bool validate() override;
  SellSharesPanel* panel() const { return m_panel; }

protected:
  SellSharesDialog() {}

private:
  SellSharesPanel* m_panel = nullptr;
};

} // namespace Tallymoor
