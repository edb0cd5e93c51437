#pragma once
#include "foundation/String.h"
#include <fx.h>

namespace Tallymoor {

/// A text field of a form. Enter goes on to the window, where the default button takes it; the toolkit's own
/// field would swallow the key.
class FormTextField : public FXTextField {
  FXDECLARE(FormTextField)
public:
  FormTextField(FXComposite* parent, FXint columns, FXObject* target = nullptr, FXSelector selector = 0,
                FXuint options = TEXTFIELD_NORMAL);

  String text() const;
  void setText(const String& text);
  /// The field shows, and can be copied from, but takes no typing and is left out of the tab order.
  void makeReadOnly();

  long onKeyPress(FXObject*, FXSelector, void*);
  bool canFocus() const override;

protected:
  FormTextField() {}

private:
  bool m_readOnly = false;
};

} // namespace Tallymoor
