#include "entry/FormComboBox.h"
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(FormComboBox)
FormComboBoxMap[] = {
    FXMAPFUNC(SEL_KEYPRESS, 0, FormComboBox::onKeyPress),
};

FXIMPLEMENT(FormComboBox, FXComboBox, FormComboBoxMap, ARRAYNUMBER(FormComboBoxMap))

FormComboBox::FormComboBox(FXComposite* parent, FXObject* target, FXSelector selector, FXuint options,
                           FXint columns)
    : FXComboBox(parent, columns, target, selector, options | FRAME_SUNKEN | FRAME_THICK | LAYOUT_CENTER_Y) {}

FXint FormComboBox::getDefaultWidth() {
  return FXComboBox::getDefaultWidth() - button->getDefaultWidth();
}

long FormComboBox::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const auto code = static_cast<FXEvent*>(data)->code;
  if (code == KEY_Return || code == KEY_KP_Enter)
    return 0;
  return FXComboBox::onKeyPress(sender, selector, data);
}

} // namespace Tallymoor
