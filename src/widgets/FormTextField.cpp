#include "widgets/FormTextField.h"
#include "widgets/ToolkitText.h"
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(FormTextField)
FormTextFieldMap[] = {
    FXMAPFUNC(SEL_KEYPRESS, 0, FormTextField::onKeyPress),
};

FXIMPLEMENT(FormTextField, FXTextField, FormTextFieldMap, ARRAYNUMBER(FormTextFieldMap))

FormTextField::FormTextField(FXComposite* parent, FXint columns, FXObject* target, FXSelector selector,
                             FXuint options)
    : FXTextField(parent, columns, target, selector, options | TEXTFIELD_ENTER_ONLY) {}

String FormTextField::text() const {
  return fromFox(getText());
}

void FormTextField::setText(const String& text) {
  FXTextField::setText(toFox(text));
  if (!m_readOnly)
    return;
  // A read-only text is read from its beginning.
  setCursorPos(0);
  makePositionVisible(0);
}

void FormTextField::makeReadOnly() {
  m_readOnly = true;
  setEditable(FALSE);
  setBackColor(getApp()->getBaseColor());
}

long FormTextField::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const auto code = static_cast<FXEvent*>(data)->code;
  if (code == KEY_Return || code == KEY_KP_Enter)
    return 0;
  return FXTextField::onKeyPress(sender, selector, data);
}

bool FormTextField::canFocus() const {
  return !m_readOnly;
}

} // namespace Tallymoor
