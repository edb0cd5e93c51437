#pragma once
#include "foundation/String.h"
#include <fx.h>
#include <vector>

namespace Tallymoor {

class DateField;
class FormTextField;
class NumberField;

/// Rows of a form, one below the other: a label, and behind it what the row holds. After align() all labels
/// have the width of the longest, so that the fields line up. The widgets belong to the parent; this may die
/// after building.
class FormRows {
public:
  explicit FormRows(FXComposite* parent);

  /// An empty row behind its label, for the caller's own widgets.
  FXHorizontalFrame* addRow(const String& label);
  FormTextField* addText(const String& label, FXObject* target = nullptr, FXSelector selector = 0);
  FormTextField* addReadOnly(const String& label);
  /// A read-only name, which may be long: it takes the rest of the row.
  FormTextField* addName(const String& label);
  NumberField* addNumber(const String& label, int decimals, FXObject* target = nullptr,
                         FXSelector selector = 0);
  /// A field with a small button beside it; the icon is the caller's, the tip is "\ttip\thelp" as the toolkit
  /// has it.
  FormTextField* addTextWithButton(const String& label, FXIcon* icon, const String& tip, FXObject* target,
                                   FXSelector buttonSelector);
  /// The same for a day, with its own target and selector for the field.
  DateField* addDate(const String& label, FXIcon* icon, const String& tip, FXObject* target,
                     FXSelector buttonSelector, FXSelector fieldSelector = 0);
  /// A row that a check button begins, in the column of the labels; the row is its parent.
  FXCheckButton* addCheck(const String& label, FXObject* target, FXSelector selector);
  /// A group box with a text of several lines, at least 400 wide.
  FXText* addNotes(const String& title);

  /// The labels get at least the width of this text, so that forms on several pages line up.
  void reserveLabel(const String& text);
  /// The label of the row that was added last.
  FXLabel* lastLabel() const;
  void align();

  /// Columns of every field.
  static constexpr FXint COLUMNS = 20;

private:
  void addButton(FXIcon* icon, const String& tip, FXObject* target, FXSelector selector);

  FXComposite* m_parent;
  String m_widestLabel;
  std::vector<FXHorizontalFrame*> m_rows;
  std::vector<FXLabel*> m_labels; ///< one for each row
};

} // namespace Tallymoor
