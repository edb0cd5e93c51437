#include "entry/FormChecks.h"
#include "entry/FormIcons.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "widgets/DateField.h"
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

bool requireNotNegative(NumberField& field, const String& name) {
  return field.value() >= 0.0 || refuse(field, name + u" can't be less than zero.");
}

bool requireNotInFuture(DateField& field, const String& message) {
  const auto date = field.date();
  if (!date)
    return refuse(field, field.complaint());
  return *date <= Date() || refuse(field, message);
}

Date dateIn(const DateField& field) {
  if (const auto date = field.date())
    return *date;
  throw Exception(field.complaint());
}

DateField* addDateRow(FormRows& rows, const String& label, const FormIcons& icons, FXObject* target,
                      FXSelector chooseSelector, FXSelector fieldSelector) {
  return rows.addDate(label, icons.calendar(), u"\tChoose a date\tChoose a date", target, chooseSelector,
                      fieldSelector);
}

} // namespace Tallymoor
