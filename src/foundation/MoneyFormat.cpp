#include "foundation/MoneyFormat.h"
#include "foundation/Amounts.h"
#include "foundation/IcuText.h"
#include <algorithm>
#include <mutex>
#include <unicode/dcfmtsym.h>
#include <unicode/numberformatter.h>
#include <unicode/ucurr.h>

namespace Tallymoor {

namespace {

constexpr char16_t MINUS_SIGN = 0x2212;

/// A locale with a region, which determines the currency, and with Latin digits.
icu::Locale moneyLocale(const std::string& name) {
  icu::Locale locale(name.c_str());
  UErrorCode status = U_ZERO_ERROR;
  if (*locale.getCountry() == '\0')
    locale.addLikelySubtags(status);
  status = U_ZERO_ERROR;
  locale.setKeywordValue("numbers", "latn", status);
  return locale;
}

/// The ISO 4217 code of the locale's currency, or XXX if it has none.
String currencyOf(const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  char16_t code[4] = {};
  ucurr_forLocale(locale.getName(), code, 4, &status);
  return U_SUCCESS(status) ? String(code) : String(u"XXX");
}

/// Converts ICU text and removes direction marks, which some currency symbols contain.
String shown(const icu::UnicodeString& icuText) {
  String text = fromIcu(icuText);
  std::erase_if(text, isDirectionMark);
  return text;
}

void removeAll(String& text, const String& part) {
  if (part.empty())
    return;
  for (std::size_t at = text.find(part); at != String::npos; at = text.find(part, at))
    text.erase(at, part.size());
}

/// Replaces other minus signs by "-".
String withPlainMinus(String text) {
  std::replace(text.begin(), text.end(), MINUS_SIGN, u'-');
  return text;
}

/// True for a single comma with no point after it, as in "0,5" and "1.234,50".
bool endsInDecimalComma(const String& text) {
  const std::size_t comma = text.find(u',');
  return comma != String::npos && text.find(u',', comma + 1) == String::npos &&
         text.find(u'.', comma) == String::npos;
}

} // namespace

struct MoneyFormat::Parts {
  /// Serialises access: an ICU formatter changes its state after a few uses, even in const functions.
  mutable std::mutex mutex;
  icu::number::LocalizedNumberFormatter formatter;
  String decimalSign;
  String currencySign;
  String currencyCode; ///< empty for none
  int decimals = 2;
};

MoneyFormat::MoneyFormat(const std::string& name, bool isChosen) {
  const icu::Locale locale = moneyLocale(name);
  const String currency = currencyOf(locale);
  auto parts = std::make_unique<Parts>();
  if (isChosen && currency != String(u"XXX"))
    parts->currencyCode = currency;
  UErrorCode status = U_ZERO_ERROR;
  parts->decimals = ucurr_getDefaultFractionDigits(currency.c_str(), &status);
  status = U_ZERO_ERROR;
  icu::DecimalFormatSymbols symbols(locale, status);
  symbols.setCurrency(currency.c_str(), status);
  parts->decimalSign = shown(symbols.getConstSymbol(icu::DecimalFormatSymbols::kMonetarySeparatorSymbol));
  parts->currencySign = shown(symbols.getConstSymbol(icu::DecimalFormatSymbols::kCurrencySymbol));
  parts->formatter = icu::number::NumberFormatter::withLocale(locale)
                         .unit(icu::CurrencyUnit(currency.c_str(), status))
                         .roundingMode(UNUM_ROUND_HALFUP);
  m_parts = std::move(parts);
}

MoneyFormat::~MoneyFormat() = default;

String MoneyFormat::currencyCode() const {
  return m_parts->currencyCode;
}

String MoneyFormat::format(double amount) const {
  const double signedAmount = showsAsZero(amount, std::min(m_parts->decimals, 2)) ? 0.0 : amount;
  const std::string digits = String::fromDouble(signedAmount, 2).toUTF8();
  UErrorCode status = U_ZERO_ERROR;
  const std::lock_guard lock(m_parts->mutex);
  const icu::number::FormattedNumber number = m_parts->formatter.formatDecimal(digits, status);
  const String text = shown(number.toString(status));
  return U_SUCCESS(status) ? text : String();
}

/// Reads by the locale's symbols only. The minus sign may be anywhere, because some locales put it last.
double MoneyFormat::readAsWritten(const String& text) const {
  String number = text;
  removeAll(number, m_parts->currencySign);
  bool negative = false;
  String plain;
  for (const char16_t unit : number) {
    if (m_parts->decimalSign.size() == 1 && unit == m_parts->decimalSign[0])
      plain.push_back(u'.');
    else if (unit == u'-')
      negative = true;
    else if (unit >= u'0' && unit <= u'9')
      plain.push_back(unit);
  }
  const double amount = plain.toDouble();
  return negative ? -amount : amount;
}

double MoneyFormat::read(const String& text) const {
  String amount = withPlainMinus(text);
  // format() may group with points. The text is its output if the value formats to the same text.
  const double asWritten = readAsWritten(amount);
  if (withPlainMinus(format(asWritten)) == amount)
    return asWritten;
  if (m_parts->decimalSign == String(u",") && endsInDecimalComma(amount)) {
    std::erase(amount, u'.');
    std::replace(amount.begin(), amount.end(), u',', u'.');
  }
  // "0.0012.34" is a typing error; its first part would be a wrong amount.
  return std::count(amount.begin(), amount.end(), u'.') > 1 ? 0.0 : amount.toDoubleFiltered();
}

} // namespace Tallymoor
