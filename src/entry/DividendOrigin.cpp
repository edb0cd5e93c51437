#include "entry/DividendOrigin.h"
#include "entry/CountryNames.h"
#include "entry/FormChecks.h"
#include "entry/FormComboBox.h"
#include "widgets/FormRows.h"
#include "widgets/NumberField.h"
#include "widgets/ToolkitText.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr int AMOUNT_DECIMALS = 2;
constexpr FXint COUNTRY_COLUMNS = 28; ///< the prompt can be read whole
constexpr FXint MOST_VISIBLE_COUNTRIES = 12;
constexpr const char16_t* COUNTRY_PROMPT = u"<enter country of origin>";

} // namespace

void DividendOrigin::addTo(FormRows& rows, FXObject* target, FXSelector selector) {
  m_foreign = rows.addCheck(u"Foreign Div", target, selector);
  m_country = new FormComboBox(static_cast<FXComposite*>(m_foreign->getParent()), nullptr, 0, COMBOBOX_NORMAL,
                               COUNTRY_COLUMNS);
  m_withholdingTax = rows.addNumber(u"Withholding Tax", AMOUNT_DECIMALS);
}

void DividendOrigin::reset(const SharePortfolioUser* portfolio) {
  m_withholdingTax->setValue(0.0);
  m_foreign->setCheck(FALSE);
  m_country->clearItems();
  for (const String& name : likelyCountries(portfolio))
    m_country->appendItem(toFox(name));
  m_country->setNumVisible(std::min(m_country->getNumItems(), MOST_VISIBLE_COUNTRIES));
  followCheck();
}

void DividendOrigin::show(const XMLDividendEvent& dividendEvent) {
  const String& country = dividendEvent.foreignDividend();
  m_foreign->setCheck(!country.empty());
  m_withholdingTax->setValue(dividendEvent.withholdingTax());
  followCheck();
  if (!country.empty())
    m_country->setText(toFox(country));
}

void DividendOrigin::followCheck() {
  if (isForeign()) {
    m_country->enable();
  } else {
    m_country->disable();
    m_country->setText(toFox(COUNTRY_PROMPT));
  }
}

void DividendOrigin::focusCountry() {
  putFocus(*m_country->textField());
}

bool DividendOrigin::isForeign() const {
  return m_foreign->getCheck() == TRUE;
}

String DividendOrigin::country() const {
  const String text = isForeign() ? fromFox(m_country->getText()).trimmed() : String();
  return text.startsWith(u"<") ? String() : text;
}

double DividendOrigin::withholdingTax() const {
  return m_withholdingTax->value();
}

bool DividendOrigin::check() const {
  if (isForeign() && country().empty())
    return refuse(*m_country->textField(), u"You must enter the country of origin of the foreign dividend.");
  return requireNotNegative(*m_withholdingTax, u"The withholding tax");
}

} // namespace Tallymoor
