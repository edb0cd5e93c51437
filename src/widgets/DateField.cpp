#include "widgets/DateField.h"
#include "foundation/Exception.h"
#include "foundation/Platform.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXIMPLEMENT(DateField, FormTextField, nullptr, 0)

namespace {

/// The last day of a year tells which number is the month.
String example() {
  return Date(Date::realToday().year(), 12, 31).toString(DATE_DISPLAY_LOCAL);
}

} // namespace

DateField::DateField(FXComposite* parent, const String& label, FXint columns, FXObject* target,
                     FXSelector selector)
    : FormTextField(parent, columns, target, selector, TEXTFIELD_NORMAL | LAYOUT_CENTER_Y), m_label(label) {
  setTipText(toFox(u"A date is written like " + example()));
}

std::optional<Date> DateField::date() const {
  Date read;
  return Platform::Instance().readTypedDate(text(), read) ? std::optional(read) : std::nullopt;
}

void DateField::setDate(const Date& date) {
  setText(date.toString(DATE_DISPLAY_LOCAL));
}

void DateField::choose(const Date& date) {
  setDate(date);
  tellTarget();
}

String DateField::complaint() const {
  constexpr std::size_t LONGEST = 40; // anything may have been pasted
  const String typed = text().trimmed();
  const String shown = typed.size() > LONGEST ? String(typed.substr(0, LONGEST) + u"...") : typed;
  const String year = String::fromLong(Date::realToday().year());
  return m_label + u": " +
         (shown.empty() ? String(u"there is no date.") : u"\"" + shown + u"\" is no date.") +
         u"\nA date is written like " + example() + u" or 31 Dec " + year + u".";
}

void DateField::killFocus() {
  FormTextField::killFocus();
  try {
    if (const auto read = date())
      setDate(*read);
  } catch (const Exception&) {
    // What can be read, but not written, stays as it was typed.
  }
  tellTarget();
}

void DateField::tellTarget() {
  if (target)
    target->tryHandle(this, FXSEL(SEL_COMMAND, message), nullptr);
}

} // namespace Tallymoor
