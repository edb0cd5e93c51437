#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "xml/RecordTexts.h"
#include <cstdint>
#include <limits>

namespace Tallymoor {

class XMLBuyEvent;
class XMLCashEvent;
class XMLSharePortfolio;

// What the operations on a portfolio share: how descriptions of cash entries read, and how a cash entry is
// found again. Descriptions and texts are what links a purchase, sale or dividend to its cash entry, so their
// forms are fixed by the records that users have.

/// Later than every day.
inline const Date FAR_OFF(std::numeric_limits<std::uint32_t>::max());

/// What the shares of a purchase cost with its brokerage, which counts as it is recorded, at two decimals.
double purchaseCost(const XMLBuyEvent& purchase, double number, double price);
/// The same for the purchase as it was recorded, before any split: the amount of its cash entry.
double purchaseCost(const XMLBuyEvent& purchase);

/// "BUY 100.00 of ABC.AX @ 12.3400"
String purchaseDescription(const String& code, double number, double price);
/// "SELL 100.00 of ABC.AX @ 12.3400"
String saleDescription(const String& code, double number, double price);
/// "DIVIDEND ABC.AX @ 0.500000 x 100.00"
String dividendDescription(const String& code, double rate, double number);
/// "DIVIDEND ABC.AX @ ", which every description of a dividend of the stock begins with.
String dividendDescriptionStart(const String& code);

/// Throws Exception, with the name that the user knows, if the value is less than zero. Forms refuse such a
/// value before; this is the last check.
void requireNotNegative(double value, const char16_t* name);
/// The same for the values of every purchase and sale.
void requireTrade(double number, double price, double brokerage);

/// The texts by which a cash entry is found. Its description must contain the one given.
struct CashEntryKey {
  String day;
  String value;
  std::int32_t type;
  String description;
};

/// The first cash entry of the portfolio that fits the key; null when none does.
XMLCashEvent* findCashEntry(XMLSharePortfolio& portfolio, const CashEntryKey& key);
const XMLCashEvent* findCashEntry(const XMLSharePortfolio& portfolio, const CashEntryKey& key);

} // namespace Tallymoor
