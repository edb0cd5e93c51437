#pragma once
#include "entry/DatedPanel.h"

namespace Tallymoor {

class FormTextField;
class NumberField;

/// The form for the price of a stock on a day, as the user knows it. Shows the price that is known for the
/// day.
class PriceEntryPanel : public DatedPanel {
  FXDECLARE(PriceEntryPanel)
public:
  PriceEntryPanel(FXComposite* parent, const String& code);

  bool validate() override;
  /// The field that has the focus when the form opens.
  FXWindow* firstField() const;
  double price() const;

protected:
  PriceEntryPanel() {}
  void dateChanged() override;

private:
  String m_code;
  NumberField* m_price = nullptr;
  FormTextField* m_known = nullptr;
};

} // namespace Tallymoor
