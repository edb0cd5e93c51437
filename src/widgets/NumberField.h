#pragma once
#include "widgets/FormTextField.h"

namespace Tallymoor {

/// A right-justified field for a real number, read and written by the program's own rules: "1,234.50" and
/// "12.5 " are understood, in a locale with a decimal comma "12,5" too, and nothing depends on the process's
/// locale. What can't be read counts as 0. Amounts of money and shares use 2 decimals, prices 4, dividend
/// rates 6.
class NumberField : public FormTextField {
  FXDECLARE(NumberField)
public:
  NumberField(FXComposite* parent, int decimals, FXint columns = 20, FXObject* target = nullptr,
              FXSelector selector = 0);

  /// What the field's text says.
  double value() const;
  /// Shows the value with the field's decimals.
  void setValue(double value);

protected:
  NumberField() {}

private:
  int m_decimals = 2;
};

} // namespace Tallymoor
