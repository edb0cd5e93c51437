#include "engine/OldSales.h"
#include "engine/PortfolioEvents.h"
#include "engine/SplitTerms.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"
#include <cmath>
#include <optional>

namespace Tallymoor {

namespace {

constexpr double ROUNDING = 0.00005; ///< of a price of four decimals

struct Bought {
  String code;
  double price;
};

/// What purchaseDescription() has written.
std::optional<Bought> readDescription(const String& description) {
  const std::size_t of = description.find(u" of "), at = description.rfind(u" @ ");
  if (!description.starts_with(u"BUY ") || of == String::npos || at == String::npos || at < of + 4)
    return std::nullopt;
  return Bought{String(description.substr(of + 4, at - of - 4)),
                String(description.substr(at + 3)).toDouble()};
}

} // namespace

OldSales::OldSales(const XMLElement& portfolio) {
  const XMLElement& reserve = portfolio.subElement(u"CashReserve");
  for (std::size_t i = 0; i < reserve.numSubElements(u"CashEvents"); ++i) {
    const XMLElement& entry = reserve.subElement(u"CashEvents", i);
    if (longValue(entry, u"Type") != CASH_EVENT_DEBIT)
      continue;
    if (const auto bought = readDescription(textValue(entry, u"Description")))
      m_boughtAt[{dateValue(entry, u"Date"), bought->code}].push_back(bought->price);
  }
}

bool OldSales::mend(XMLElement& sale, const String& code) const {
  const Date sold = dateValue(sale, u"SellDate");
  if (!isSplitBy(sale, sold))
    return false;
  const auto purchases = m_boughtAt.find({dateValue(sale, u"BuyDate"), code});
  if (purchases == m_boughtAt.end())
    return false;
  const SharesAt recorded{doubleValue(sale, u"NumHeld"), doubleValue(sale, u"BuyPrice")};
  const SharesAt bought = sharesAsBought(sale, sold, recorded);
  std::optional<double> price;
  for (const double paid : purchases->second) {
    if (showsAsZero(paid - recorded.price))
      return false; // it may be in the terms of its purchase already
    if (std::abs(paid - bought.price) <= ROUNDING * std::max(1.0, bought.price / recorded.price))
      price = paid;
  }
  if (!price || !isRecordedAsSold(sale))
    return false;
  sale.subElement(u"NumHeld").setValue(recordedNumberText(bought.number));
  sale.subElement(u"BuyPrice").setValue(priceText(*price));
  return true;
}

} // namespace Tallymoor
