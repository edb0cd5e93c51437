#pragma once
#include "foundation/Date.h"
#include "widgets/FormTextField.h"
#include <optional>

namespace Tallymoor {

/// A form's field for a day, which is typed as people type dates (see TypedDate). When the keyboard leaves
/// the field a text that is a date is written in the user's short form, so that he sees how it was read.
///
/// When the keyboard has moved to another widget of the form, and the text has changed since the target was
/// last told, the target gets SEL_COMMAND. It gets none when the form is left (a button of the dialog,
/// Escape, another page): then nothing must be fetched, and for OK the form's validate() checks the date.
/// The form is the parent of the field's row.
class DateField : public FormTextField {
  FXDECLARE(DateField)
public:
  enum { ID_TELL = FXTextField::ID_LAST, ID_LAST };

  /// The label is what the user knows the field by.
  DateField(FXComposite* parent, const String& label, FXint columns, FXObject* target = nullptr,
            FXSelector selector = 0);
  ~DateField() override;

  /// Nothing when the text is no date.
  std::optional<Date> date() const;
  /// Shows a day in the short form. The target is told nothing.
  void setDate(const Date& date);
  /// The same for a day that the user has chosen elsewhere, of which the target is told.
  void choose(const Date& date);
  /// Why the text can't be taken, with an example of one that can.
  String complaint() const;

  void killFocus() override;
  /// The keyboard has left the field, and has come to where it goes.
  long onTell(FXObject*, FXSelector, void*);

protected:
  DateField() {}

private:
  void tellTarget();

  String m_label;
  String m_told; ///< the text that the target knows
};

} // namespace Tallymoor
