#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "xml/RecordTexts.h"
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

namespace Tallymoor {

class XMLElement;

// What the operations on a portfolio share: how descriptions of cash entries read, and how a cash entry is
// found again. Descriptions and texts are what links a purchase, sale or dividend to its cash entry, so their
// forms are fixed by the records that users have.

/// Later than every day.
inline const Date FAR_OFF(std::numeric_limits<std::uint32_t>::max());

/// The comment of a purchase, as an attribute of the sale with which the last of it went.
inline constexpr std::u16string_view BUY_COMMENT = u"BuyComment";

/// What the shares of a purchase (BuyEvent) cost with its brokerage, which counts as it is recorded, at two
/// decimals.
double purchaseCost(const XMLElement& purchase, double number, double price);
/// The same of the purchase as it was recorded, whatever splits came since; its cash entry was made of that.
double purchaseCost(const XMLElement& purchase);

/// "BUY 100.00 of ABC.AX @ 12.3400"
String purchaseDescription(const String& code, double number, double price);
/// "SELL 100.00 of ABC.AX @ 12.3400"
String saleDescription(const String& code, double number, double price);
/// "DIVIDEND ABC.AX @ 0.500000 x 100.00"
String dividendDescription(const String& code, double rate, double number);
/// "DIVIDEND ABC.AX @ ", which every description of a dividend of the stock begins with.
String dividendDescriptionStart(const String& code);

/// Throws Exception, by the name that the user knows the value by, when it is less than zero. Forms refuse
/// such a value before: this is the last place that can.
void requireNotNegative(double value, const char16_t* name);
/// The same of what every purchase and sale has.
void requireTrade(double number, double price, double brokerage);

/// Sets the value of an optional text, unless the new text is empty.
void setOptionalText(XMLElement& event, std::u16string_view reference, const String& text);

/// Place of an instance among those of its reference name, by identity; nothing when it is not there.
std::optional<std::size_t> indexOf(const XMLElement& parent, std::u16string_view reference,
                                   const XMLElement& instance);

/// What a cash entry is known by. The description must contain the text.
struct CashEntryKey {
  String day;
  String value;
  std::int32_t type;
  String description;
};

/// Place of the first cash entry of the portfolio that fits the key.
std::optional<std::size_t> findCashEntry(const XMLElement& portfolio, const CashEntryKey& key);
XMLElement& cashEntry(XMLElement& portfolio, std::size_t index);
void removeCashEntry(XMLElement& portfolio, std::size_t index);

} // namespace Tallymoor
