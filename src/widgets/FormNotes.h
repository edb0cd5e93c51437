#pragma once
#include <fx.h>

namespace Tallymoor {

/// A text of several lines in a form. Tab goes on to the next field; the toolkit's own text would write it,
/// and never let the keyboard out. In a text that is only read Enter goes on to the window, where the default
/// button takes it.
class FormNotes : public FXText {
  FXDECLARE(FormNotes)
public:
  FormNotes(FXComposite* parent, FXuint options);

  /// At least 400 pixels, unless a number of columns was set.
  FXint getDefaultWidth() override;

  long onKeyPress(FXObject*, FXSelector, void*);

protected:
  FormNotes() {}
};

} // namespace Tallymoor
