#pragma once
#include "entry/CashRow.h"
#include "entry/DatedPanel.h"

namespace Tallymoor {

class FormTextField;
class NumberField;

/// The form for an amount of cash on a day, with an optional description: deposits, withdrawals, interest and
/// fees, as its texts say.
class GetFloatPanel : public DatedPanel {
  FXDECLARE(GetFloatPanel)
public:
  enum { ID_AMOUNT = DatedPanel::ID_LAST, ID_LAST };

  GetFloatPanel(FXComposite* parent, const String& title, const String& description,
                double initialValue = 0.0, const Date& initialDate = Date());

  /// These values, and no description. An amount that is negative already, as the proceeds of a sale for
  /// less than its brokerage, may stay so; any other may not be made so.
  void reset(double initialValue = 0.0, const Date& initialDate = Date());
  void setText(const String& description);
  /// For an amount that may be zero, as the cash that a portfolio starts with.
  void allowZero(bool allowed) { m_zeroAllowed = allowed; }
  /// What is in the cash reserve without the amount, which is put into it (credit) or taken from it: the form
  /// shows what is there afterwards.
  void setCashBefore(double cash, bool isCredit);

  bool validate() override;
  /// The field that has the focus when the form opens.
  FXWindow* firstField() const;

  double value() const;
  /// What the user wrote on the amount; description() is the form's own.
  String text() const;

  /// The amount was typed: the cash afterwards follows.
  long onAmount(FXObject*, FXSelector, void*);

protected:
  GetFloatPanel() {}

private:
  void showCash();
  bool checkValue() const;

  bool m_negativeAllowed = false;
  bool m_zeroAllowed = false;
  bool m_isCredit = true;
  CashRow m_cash;
  NumberField* m_value = nullptr;
  FormTextField* m_text = nullptr;
};

} // namespace Tallymoor
