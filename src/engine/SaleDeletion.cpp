#include "engine/SaleDeletion.h"
#include "engine/SaleCash.h"
#include "engine/SplitTerms.h"
#include "xml/PortfolioRecords.h"
#include <set>
#include <utility>

namespace Tallymoor {

namespace {

using CashLine = std::optional<SaleDeletion::CashLine>;

CashLine lineAt(const XMLElement& portfolio, const std::optional<std::size_t>& place) {
  if (!place)
    return std::nullopt;
  const XMLElement& entry = portfolio.subElement(u"CashReserve").subElement(u"CashEvents", *place);
  return SaleDeletion::CashLine{*place, dateValue(entry, u"Date"), doubleValue(entry, u"Value"),
                                textValue(entry, u"Description")};
}

std::set<std::pair<Date, std::int32_t>> splitsUpTo(const XMLElement& event, const Date& day) {
  std::set<std::pair<Date, std::int32_t>> splits;
  for (std::size_t i = 0; i < event.numSubElements(u"Adjustments"); ++i) {
    const XMLElement& adjustment = event.subElement(u"Adjustments", i);
    if (const Date start = dateValue(adjustment, u"StartDate"); start <= day)
      splits.emplace(start, longValue(adjustment, u"Factor"));
  }
  return splits;
}

bool isRestOf(const XMLElement& parcel, const XMLElement& sale) {
  const Date sold = dateValue(sale, u"SellDate");
  return dateValue(parcel, u"BuyDate") == dateValue(sale, u"BuyDate") &&
         priceText(doubleValue(parcel, u"BuyPrice")) == priceText(doubleValue(sale, u"BuyPrice")) &&
         splitsUpTo(parcel, sold) == splitsUpTo(sale, sold);
}

const XMLElement* findRest(const XMLElement& portfolio, const XMLElement& sale) {
  const XMLElement& stocks = portfolio.subElement(u"HeldShares");
  for (std::size_t i = 0; i < stocks.numSubElements(u"HeldShares"); ++i) {
    const XMLElement& stock = stocks.subElement(u"HeldShares", i);
    if (textValue(stock, u"Code") == textValue(*sale.parent(), u"Code"))
      for (std::size_t j = 0; j < stock.numSubElements(u"BuyEvents"); ++j)
        if (isRestOf(stock.subElement(u"BuyEvents", j), sale))
          return &stock.subElement(u"BuyEvents", j);
  }
  return nullptr;
}

} // namespace

SaleDeletion::SaleDeletion(const XMLElement& sale)
    : bought(dateValue(sale, u"BuyDate")), costValue(costOf(sale)) {
  const SharesAt shares = sharesAsSold(sale);
  const XMLElement& portfolio = *portfolioOf(sale);
  number = shares.number;
  buyPrice = shares.price;
  proceedsValue = proceedsOf(sale, number);
  proceeds = lineAt(portfolio, findProceeds(portfolio, sale, number));
  cost = lineAt(portfolio, findCost(portfolio, sale));
  // With a cash entry of its own it was a purchase of its own, whatever else was bought on that day.
  rest = cost ? nullptr : findRest(portfolio, sale);
}

} // namespace Tallymoor
