#include "entry/GetFloatPanel.h"
#include "entry/FormChecks.h"
#include "widgets/FormRows.h"
#include "widgets/HandlerScope.h"
#include "widgets/NumberField.h"

namespace Tallymoor {

FXDEFMAP(GetFloatPanel)
GetFloatPanelMap[] = {
    FXMAPFUNC(SEL_CHANGED, GetFloatPanel::ID_AMOUNT, GetFloatPanel::onAmount),
};

FXIMPLEMENT(GetFloatPanel, DatedPanel, GetFloatPanelMap, ARRAYNUMBER(GetFloatPanelMap))

GetFloatPanel::GetFloatPanel(FXComposite* parent, const String& title, const String& description,
                             double initialValue, const Date& initialDate)
    : DatedPanel(parent, title, description) {
  constexpr int AMOUNT_DECIMALS = 2;
  FormRows rows(this);
  m_value = rows.addNumber(u"Amount", AMOUNT_DECIMALS, this, ID_AMOUNT);
  addDate(rows, u"Date");
  m_text = rows.addText(u"Description (optional)");
  m_cash.addTo(rows);
  rows.align();
  reset(initialValue, initialDate);
}

void GetFloatPanel::reset(double initialValue, const Date& initialDate) {
  m_negativeAllowed = initialValue < 0.0;
  m_value->setValue(initialValue);
  setDate(initialDate);
  m_text->setText(String());
  showCash();
}

void GetFloatPanel::setCashBefore(double cash, bool isCredit) {
  m_isCredit = isCredit;
  m_cash.setBefore(cash);
  showCash();
}

void GetFloatPanel::showCash() {
  m_cash.showEffect(m_isCredit ? value() : -value());
}

long GetFloatPanel::onAmount(FXObject*, FXSelector, void*) {
  return guardedHandler(u"GetFloatPanel::onAmount failed.", [this] { showCash(); });
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
    return checkValue();
  });
}

bool GetFloatPanel::checkValue() const {
  if (!m_zeroAllowed && value() == 0.0)
    return refuse(*m_value, u"You must enter the value.");
  return m_negativeAllowed || requireNotNegative(*m_value, u"The amount");
}

double GetFloatPanel::value() const {
  return m_value->value();
}

String GetFloatPanel::text() const {
  return m_text->text();
}

} // namespace Tallymoor
