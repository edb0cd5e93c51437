#pragma once
#include "widgets/Dialog.h"

namespace Tallymoor {

class ReceiveDividendsPanel;
class SharePortfolioUser;

/// Asks for a dividend; the caller records it from panel() when execute() gives 1.
class ReceiveDividendsDialog : public Dialog {
  FXDECLARE(ReceiveDividendsDialog)
public:
  ReceiveDividendsDialog(FXWindow* owner, const SharePortfolioUser& portfolio,
                         const String& initialCode = String());

  bool validate() override;
  ReceiveDividendsPanel* panel() const { return m_panel; }

protected:
  ReceiveDividendsDialog() {}

private:
  ReceiveDividendsPanel* m_panel = nullptr;
};

} // namespace Tallymoor
