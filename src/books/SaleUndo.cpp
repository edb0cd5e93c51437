#include "books/SaleUndo.h"
#include "books/Holdings.h"
#include "books/PortfolioEvents.h"
#include "books/SplitBook.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"
#include "xml/RecordTexts.h"
#include <algorithm>

namespace Tallymoor {

namespace {

String reinvestmentComment(const XMLSharePortfolio& portfolio, const XMLBuyEvent& parcel) {
  for (const XMLDividendEvent& dividend : portfolio.dividends())
    if (dividend.code() == parcel.code() && dividend.received() == parcel.bought() &&
        showsTheSame(dividend.drpShares(), parcel.number(), 4) &&
        showsTheSame(dividend.drpRate(), parcel.price(), 4))
      return dividendDescription(dividend.code(), dividend.rate(), dividend.number());
  return String();
}

/// What the sale has kept, which sales of earlier versions have not. That of a reinvestment follows its
/// dividend, by which it is found again.
String boughtComment(const XMLSharePortfolio& portfolio, const XMLSellEvent& sale,
                     const XMLBuyEvent& parcel) {
  String kept = sale.buyComment();
  if (!kept.empty() && !kept.startsWith(dividendDescriptionStart(parcel.code())))
    return kept;
  const String reinvested = reinvestmentComment(portfolio, parcel);
  return reinvested.empty() ? kept : reinvested;
}

/// Puts the last parcel behind those bought by its day.
void sortInLast(XMLHeldShare& stock) {
  const auto parcels = stock.parcels();
  const Date bought = parcels.back().bought();
  std::size_t place = parcels.size() - 1;
  while (place > 0 && parcels[place - 1].bought() > bought)
    --place;
  parcels.moveLastTo(place);
}

void addParcelOf(const XMLSellEvent& sale, Holdings& holdings, const SplitBook& splits) {
  XMLHeldShare& stock = holdings.heldShareFor(sale.code());
  XMLBuyEvent& parcel = stock.parcels().add();
  parcel.copyPurchase(sale);
  if (const String comment = boughtComment(holdings.portfolio(), sale, parcel); !comment.empty())
    parcel.setComment(comment);
  copyAdjustments(sale, parcel, FAR_OFF);
  splits.addKnownSplits(parcel, sale.sold(), FAR_OFF);
  sortInLast(stock);
}

} // namespace

void giveSharesBack(Holdings& holdings, const SplitBook& splits, const XMLSellEvent& sale,
                    const XMLBuyEvent* rest) {
  if (!rest) {
    addParcelOf(sale, holdings, splits);
    return;
  }
  const auto parcels = elementAs<XMLHeldShare>(*rest->parent()).parcels();
  XMLBuyEvent& parcel = *std::find_if(parcels.begin(), parcels.end(),
                                      [rest](const XMLBuyEvent& other) { return &other == rest; });
  parcel.setNumberText(recordedNumberText(parcel.number() + sale.number()));
  parcel.setBrokerage(parcel.brokerage() + sale.brokerage());
  if (const String comment = boughtComment(holdings.portfolio(), sale, parcel);
      parcel.comment().empty() && !comment.empty())
    parcel.setComment(comment);
}

} // namespace Tallymoor
