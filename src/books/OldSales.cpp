#include "books/OldSales.h"
#include "books/PortfolioEvents.h"
#include "books/SplitTerms.h"
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

OldSales::OldSales(const XMLSharePortfolio& portfolio) {
  for (const XMLCashEvent& entry : portfolio.cashEvents()) {
    if (entry.type() != CASH_EVENT_DEBIT)
      continue;
    if (const auto bought = readDescription(entry.description()))
      m_boughtAt[{entry.day(), bought->code}].push_back(bought->price);
  }
}

bool OldSales::mend(XMLSellEvent& sale) const {
  const Date sold = sale.sold();
  if (!isSplitBy(sale, sold))
    return false;
  const auto purchases = m_boughtAt.find({sale.bought(), sale.code()});
  if (purchases == m_boughtAt.end())
    return false;
  const SharesAt recorded{sale.number(), sale.price()};
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
  sale.setNumberText(recordedNumberText(bought.number));
  sale.setPrice(*price);
  return true;
}

} // namespace Tallymoor
