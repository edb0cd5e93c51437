#include "entry/CashRow.h"
#include "widgets/FormRows.h"
#include "widgets/NumberField.h"

namespace Tallymoor {

void CashRow::addTo(FormRows& rows) {
  constexpr int DECIMALS = 2;
  m_field = rows.addNumber(u"Cash afterwards", DECIMALS);
  m_field->makeReadOnly();
  setBefore(std::nullopt);
}

void CashRow::setBefore(std::optional<double> cash) {
  m_before = cash;
  FXWindow* row = m_field->getParent();
  if (cash)
    row->show();
  else
    row->hide();
  row->getParent()->recalc();
  showEffect(m_effect);
}

void CashRow::showEffect(double effect) {
  m_effect = effect;
  m_field->setValue(m_before.value_or(0.0) + effect);
}

} // namespace Tallymoor
