#pragma once
#include "foundation/Date.h"
#include "widgets/FormTextField.h"
#include <optional>

namespace Tallymoor {

/// A form's field for a day, which is typed as people type dates (see TypedDate). When the keyboard leaves
/// the field a text that is a date is written in the user's short form, so that he sees how it was read, and
/// the target hears SEL_COMMAND.
class DateField : public FormTextField {
  FXDECLARE(DateField)
public:
  /// The label is what the user knows the field by.
  DateField(FXComposite* parent, const String& label, FXint columns, FXObject* target = nullptr,
            FXSelector selector = 0);

  /// Nothing when the text is no date.
  std::optional<Date> date() const;
  /// Shows a day in the short form. The target is told nothing.
  void setDate(const Date& date);
  /// The same for a day that the user has chosen elsewhere, of which the target is told.
  void choose(const Date& date);
  /// Why the text can't be taken, with an example of one that can.
  String complaint() const;

  void killFocus() override;

protected:
  DateField() {}

private:
  void tellTarget();

  String m_label;
};

} // namespace Tallymoor
