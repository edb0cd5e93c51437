#include "widgets/NumberField.h"
#include "foundation/Platform.h"

namespace Tallymoor {

FXIMPLEMENT(NumberField, FormTextField, nullptr, 0)

NumberField::NumberField(FXComposite* parent, int decimals, FXint columns, FXObject* target,
                         FXSelector selector)
    : FormTextField(parent, columns, target, selector, TEXTFIELD_NORMAL | JUSTIFY_RIGHT),
      m_decimals(decimals) {
  setValue(0.0);
}

double NumberField::value() const {
  return Platform::Instance().parseAmount(text());
}

void NumberField::setValue(double value) {
  setText(String::fromDouble(value, m_decimals));
}

} // namespace Tallymoor
