#pragma once
#include "widgets/FormRows.h"

namespace Tallymoor {

/// A drop-down list of a form, as wide as a text field of so many columns. Enter goes on to the window, where
/// the default button takes it; the toolkit's own combo box would swallow the key.
class FormComboBox : public FXComboBox {
  FXDECLARE(FormComboBox)
public:
  FormComboBox(FXComposite* parent, FXObject* target, FXSelector selector, FXuint options,
               FXint columns = FormRows::COLUMNS);

  /// The part that takes the focus.
  FXTextField* textField() const { return field; }
  FXint getDefaultWidth() override;

  long onKeyPress(FXObject*, FXSelector, void*);

protected:
  FormComboBox() {}
};

} // namespace Tallymoor
