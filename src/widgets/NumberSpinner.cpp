#include "widgets/NumberSpinner.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(NumberSpinner)
NumberSpinnerMap[] = {
    FXMAPFUNC(SEL_CHANGED, FXSpinner::ID_ENTRY, NumberSpinner::onTyped),
    FXMAPFUNC(SEL_COMMAND, FXSpinner::ID_ENTRY, NumberSpinner::onTyped),
    FXMAPFUNC(SEL_KEYPRESS, 0, NumberSpinner::onKeyPress),
};

FXIMPLEMENT(NumberSpinner, FXSpinner, NumberSpinnerMap, ARRAYNUMBER(NumberSpinnerMap))

NumberSpinner::NumberSpinner(FXComposite* parent, FXint columns, std::int32_t minimum, std::int32_t maximum,
                             std::int32_t initial, FXObject* target, FXSelector selector)
    : FXSpinner(parent, columns, target, selector,
                SPIN_NORMAL | FRAME_SUNKEN | FRAME_THICK | LAYOUT_CENTER_Y) {
  setRange(minimum, std::max(minimum, maximum));
  setValue(initial);
}

String NumberSpinner::typed() const {
  return fromFox(textField->getText()).trimmed();
}

bool NumberSpinner::isEmpty() const {
  return typed().empty();
}

bool NumberSpinner::isBeyondLimits() const {
  const std::int32_t value = typed().toLong();
  return !isEmpty() && value != std::clamp(value, range[0], range[1]);
}

void NumberSpinner::setValue(FXint value, FXbool notify) {
  FXSpinner::setValue(value, notify);
  textField->setText(FXStringVal(pos));
}

long NumberSpinner::onTyped(FXObject*, FXSelector selector, void*) {
  if (isEmpty())
    return 1;
  pos = std::clamp(typed().toLong(), range[0], range[1]);
  if (target)
    target->tryHandle(this, FXSEL(FXSELTYPE(selector), message),
                      reinterpret_cast<void*>(static_cast<FXival>(pos)));
  return 1;
}

long NumberSpinner::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const auto code = static_cast<FXEvent*>(data)->code;
  if (code == KEY_Return || code == KEY_KP_Enter)
    return 0;
  return FXSpinner::onKeyPress(sender, selector, data);
}

} // namespace Tallymoor
