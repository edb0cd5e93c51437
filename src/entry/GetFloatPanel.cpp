#include "entry/GetFloatPanel.h"
#include "entry/FormChecks.h"
#include "widgets/FormRows.h"
#include "widgets/NumberField.h"

namespace Tallymoor {

FXIMPLEMENT(GetFloatPanel, DatedPanel, nullptr, 0)

GetFloatPanel::GetFloatPanel(FXComposite* parent, const String& title, const String& description,
                             double initialValue, const Date& initialDate)
    : DatedPanel(parent, title, description) {
  constexpr int amountDecimals = 2;
  FormRows rows(this);
  m_value = rows.addNumber(u"Amount", amountDecimals);
  addDate(rows, u"Date");
  m_text = rows.addText(u"Description (optional)");
  rows.align();
  reset(initialValue, initialDate);
}

void GetFloatPanel::reset(double initialValue, const Date& initialDate) {
  m_value->setValue(initialValue);
  setDate(initialDate);
  m_text->setText(String());
}

void GetFloatPanel::setText(const String& description) {
  m_text->setText(description);
}

FXWindow* GetFloatPanel::firstField() const {
  return m_value;
}

bool GetFloatPanel::validate() {
  return runChecks([this] {
    if (!checkDate(u"You can't specify a date in the future."))
      return false;
    return m_zeroAllowed || value() != 0.0 || refuse(*m_value, u"You must enter the value.");
  });
}

double GetFloatPanel::value() const {
  return m_value->value();
}

String GetFloatPanel::text() const {
  return m_text->text();
}

} // namespace Tallymoor
