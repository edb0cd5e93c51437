#pragma once
#include "widgets/Dialog.h"

namespace Tallymoor {

class XMLSellEvent;
struct SaleDeletion;

/// Says what deleting a recorded sale will do to the cash and the shares, and asks for one of two ways: the
/// shares are held again, which is the choice unless the user takes the other, or their purchase goes as
/// well.
class DeleteSaleDialog : public Dialog {
  FXDECLARE(DeleteSaleDialog)
public:
  enum { ID_GIVE_BACK = Dialog::ID_LAST, ID_DELETE_PURCHASE, ID_LAST };

  /// The sale belongs to a portfolio; only read, and only here.
  DeleteSaleDialog(FXWindow* owner, const XMLSellEvent& sale);

  /// True when the shares are to be held again.
  bool givesSharesBack() const { return m_giveBack->getCheck() == TRUE; }

  long onChoose(FXObject*, FXSelector, void*);

protected:
  DeleteSaleDialog() {}

private:
  FXRadioButton* addChoice(FXSelector selector, const String& title, const String& consequences);
  void choose(FXSelector selector);

  FXRadioButton* m_giveBack = nullptr;
  FXRadioButton* m_deletePurchase = nullptr;
};

} // namespace Tallymoor
