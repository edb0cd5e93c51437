#include "books/SaleDeletion.h"
#include "books/SaleCash.h"
#include "books/SplitTerms.h"
#include "xml/PortfolioRecords.h"
#include <set>
#include <utility>

namespace Tallymoor {

namespace {

using CashLine = std::optional<SaleDeletion::CashLine>;

CashLine lineOf(const XMLCashEvent* entry) {
  if (!entry)
    return std::nullopt;
  return SaleDeletion::CashLine{entry, entry->day(), entry->amount(), entry->description()};
}

std::set<std::pair<Date, std::int32_t>> splitsUpTo(const XMLParcel& parcel, const Date& day) {
  std::set<std::pair<Date, std::int32_t>> splits;
  for (const XMLSplitAdjustment& adjustment : parcel.adjustments())
    if (const Date start = adjustment.day(); start <= day)
      splits.emplace(start, adjustment.factor());
  return splits;
}

bool isRestOf(const XMLBuyEvent& parcel, const XMLSellEvent& sale) {
  const Date sold = sale.sold();
  return parcel.bought() == sale.bought() && priceText(parcel.price()) == priceText(sale.price()) &&
         splitsUpTo(parcel, sold) == splitsUpTo(sale, sold);
}

const XMLBuyEvent* findRest(const XMLSharePortfolio& portfolio, const XMLSellEvent& sale) {
  for (const XMLHeldShare& stock : portfolio.heldShares())
    if (stock.code() == sale.code())
      for (const XMLBuyEvent& parcel : stock.parcels())
        if (isRestOf(parcel, sale))
          return &parcel;
  return nullptr;
}

} // namespace

SaleDeletion::SaleDeletion(const XMLSellEvent& sale) : bought(sale.bought()), costValue(costOf(sale)) {
  const SharesAt shares = sharesAsSold(sale);
  const XMLSharePortfolio& portfolio = *portfolioOf(sale);
  number = shares.number;
  buyPrice = shares.price;
  proceedsValue = proceedsOf(sale, number);
  proceeds = lineOf(findProceeds(portfolio, sale, number));
  cost = lineOf(findCost(portfolio, sale));
  // A cash entry of exactly these shares means that they were a whole purchase: it left no rest.
  rest = cost ? nullptr : findRest(portfolio, sale);
}

} // namespace Tallymoor
