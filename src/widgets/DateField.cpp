#include "widgets/DateField.h"
#include "foundation/Exception.h"
#include "foundation/Platform.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXDEFMAP(DateField)
DateFieldMap[] = {
    FXMAPFUNC(SEL_TIMEOUT, DateField::ID_TELL, DateField::onTell),
};

FXIMPLEMENT(DateField, FormTextField, DateFieldMap, ARRAYNUMBER(DateFieldMap))

namespace {

/// The last day of a year tells which number is the month.
String example() {
  return Date(Date::realToday().year(), 12, 31).toString(DATE_DISPLAY_LOCAL);
}

/// The widget of the window that has the keyboard whenever the window has it.
const FXWindow* keyboardIn(const FXWindow& window) {
  const FXWindow* widget = &window;
  while (widget->getFocus())
    widget = widget->getFocus();
  return widget;
}

} // namespace

DateField::DateField(FXComposite* parent, const String& label, FXint columns, FXObject* target,
                     FXSelector selector)
    : FormTextField(parent, columns, target, selector, TEXTFIELD_NORMAL | LAYOUT_CENTER_Y), m_label(label) {
  setTipText(toFox(u"A date is written like " + example()));
}

DateField::~DateField() {
  getApp()->removeTimeout(this, ID_TELL);
}

std::optional<Date> DateField::date() const {
  Date read;
  return Platform::Instance().readTypedDate(text(), read) ? std::optional(read) : std::nullopt;
}

void DateField::setDate(const Date& date) {
  setText(date.toString(DATE_DISPLAY_LOCAL));
  m_told = text();
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
      setText(read->toString(DATE_DISPLAY_LOCAL));
  } catch (const Exception&) {
    // What can be read, but not written, stays as it was typed.
  }
  // The toolkit takes the keyboard away first and then gives it to the next widget, if there is one.
  if (text() != m_told)
    getApp()->addTimeout(this, ID_TELL, 0);
}

long DateField::onTell(FXObject*, FXSelector, void*) {
  const FXWindow* form = getParent()->getParent();
  if (text() != m_told && form->containsChild(keyboardIn(*getShell())))
    tellTarget();
  return 1;
}

void DateField::tellTarget() {
  m_told = text();
  if (target)
    target->tryHandle(this, FXSEL(SEL_COMMAND, message), nullptr);
}

} // namespace Tallymoor
