#pragma once
#include "foundation/Date.h"
#include <fx.h>

namespace Tallymoor {

class DateField;
class FormIcons;
class FormRows;
class NumberField;

// The steps of a form's validate(). Each tells the user what is wrong and gives false to stay in the form.
// The field at fault keeps what was typed and has the focus then, its text selected.

/// Gives a field the focus, its text selected, so that typing replaces it.
void putFocus(FXWindow& field);

/// An error that ends the checks; always false.
bool refuse(FXWindow& field, const String& message);
/// A question that has to be answered with Yes for the checks to go on.
bool confirm(FXWindow& field, const String& question);
/// Refuses a number that shows as zero or is negative, which no number of shares and no price of a trade
/// can be.
bool requirePositive(NumberField& field, const String& message);
/// Refuses a number below zero, by the name that the user knows the field by, as in "The brokerage paid".
bool requireNotNegative(NumberField& field, const String& name);
/// Refuses a text that is no date, and, with the message, a day after today.
bool requireNotInFuture(DateField& field, const String& message);

/// The day in a field. Throws Exception when the text is no date.
Date dateIn(const DateField& field);

/// The row of a date, with the button that opens the calendar. The field tells the target of another day
/// under its own selector, if there is one.
DateField* addDateRow(FormRows& rows, const String& label, const FormIcons& icons, FXObject* target,
                      FXSelector chooseSelector, FXSelector fieldSelector = 0);

} // namespace Tallymoor
