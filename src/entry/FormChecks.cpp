#include "entry/FormChecks.h"
#include "entry/FormIcons.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "widgets/FormRows.h"
#include "widgets/MainWindow.h"
#include "widgets/NumberField.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

void putFocus(FXWindow& field) {
  field.setFocus();
  if (auto* text = dynamic_cast<FXTextField*>(&field))
    text->selectAll();
}

bool refuse(FXWindow& field, const String& message) {
  MainWindow::error(message);
  putFocus(field);
  return false;
}

bool confirm(FXWindow& field, const String& question) {
  if (MainWindow::question(question))
    return true;
  putFocus(field);
  return false;
}

bool requirePositive(NumberField& field, const String& message) {
  return (field.value() > 0.0 && !showsAsZero(field.value())) || refuse(field, message);
}

bool requireNotInFuture(FormTextField& field, const String& message) {
  try {
    return dateIn(field) <= Date() || refuse(field, message);
  } catch (const Exception&) {
    putFocus(field);
    throw;
  }
}

Date dateIn(const FormTextField& field) {
  return Date(field.text().trimmed(), DATE_DISPLAY_LOCAL);
}

FormTextField* addDateRow(FormRows& rows, const String& label, const FormIcons& icons, FXObject* target,
                          FXSelector chooseSelector) {
  FormTextField* field = rows.addTextWithButton(label, icons.calendar(), u"\tChoose a date\tChoose a date",
                                                target, chooseSelector);
  // Any other form is refused, and the last day of a year tells which number is the month.
  const String example = Date(Date::realToday().year(), 12, 31).toString(DATE_DISPLAY_LOCAL);
  field->setTipText(toFox(u"A date is written like " + example));
  return field;
}

} // namespace Tallymoor
