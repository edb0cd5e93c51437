#include "entry/PriceEntryPanel.h"
#include "entry/FormChecks.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "market/StockNames.h"
#include "market/TallymoorInternet.h"
#include "widgets/FormRows.h"
#include "widgets/FormTextField.h"
#include "widgets/NumberField.h"

namespace Tallymoor {

FXIMPLEMENT(PriceEntryPanel, DatedPanel, nullptr, 0)

namespace {

/// The close that is known for the day, with the day that it belongs to if that is an earlier one.
String knownText(const String& code, const Date& day) {
  const auto known = TallymoorInternet::Instance().lastTradedClose(code, day);
  if (!known)
    return u"none";
  const String price = shortPriceText(known->close);
  return known->day == day ? price : price + u" on " + known->day.toString(DATE_DISPLAY_LOCAL);
}

} // namespace

PriceEntryPanel::PriceEntryPanel(FXComposite* parent, const String& code)
    : DatedPanel(parent, u"Type a price", String()), m_code(code) {
  constexpr int PRICE_DECIMALS = 4;
  FormRows rows(this);
  rows.addReadOnly(u"Stock")->setText(code);
  rows.addName(u"Name")->setText(StockNames::nameOf(code));
  m_price = rows.addNumber(u"Price", PRICE_DECIMALS);
  addDate(rows, u"Date");
  m_known = rows.addReadOnly(u"Known price");
  rows.align();
  setDate(Date());
  dateChanged();
}

FXWindow* PriceEntryPanel::firstField() const {
  return m_price;
}

double PriceEntryPanel::price() const {
  return m_price->value();
}

void PriceEntryPanel::dateChanged() {
  try {
    m_known->setText(knownText(m_code, date()));
  } catch (const Exception&) {
    m_known->setText(String()); // of a text that is no date yet
  }
}

bool PriceEntryPanel::validate() {
  return runChecks([this] {
    return requirePositive(*m_price, u"You must enter the price.") &&
           checkDate(u"You can't specify a date in the future.");
  });
}

} // namespace Tallymoor
