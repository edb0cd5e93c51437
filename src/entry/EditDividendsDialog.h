#pragma once
#include "widgets/Dialog.h"

namespace Tallymoor {

class ReceiveDividendsPanel;
class SharePortfolioUser;
class XMLDividendEvent;

/// Changes a recorded dividend; the caller edits the record from panel() when execute() gives 1.
class EditDividendsDialog : public Dialog {
  FXDECLARE(EditDividendsDialog)
public:
  /// The dividend is one of the portfolio; only read, and only here.
  EditDividendsDialog(FXWindow* owner, const SharePortfolioUser& portfolio,
                      const XMLDividendEvent& dividendEvent);

  bool validate() override;
  ReceiveDividendsPanel* panel() const { return m_panel; }

protected:
  EditDividendsDialog() {}

private:
  ReceiveDividendsPanel* m_panel = nullptr;
};

} // namespace Tallymoor
