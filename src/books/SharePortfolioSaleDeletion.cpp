// Deleting a sale, with the purchase of its shares or without.
#include "books/SaleCash.h"
#include "books/SaleDeletion.h"
#include "books/SharePortfolioUser.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

namespace {

const XMLSellEvent* findSale(const XMLSoldShare& stock, const Date& date, double number) {
  const String day = dayText(date);
  for (const XMLSellEvent& sale : stock.sales())
    if (sale.dayLeaf().value() == day && showsTheSame(sharesAsSold(sale).number, number, 4))
      return &sale;
  return nullptr;
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

} // namespace

bool SharePortfolioUser::deleteSellEvent(const String& code, const Date& date, double number) {
  const XMLSoldShare* stock = findSoldShare(code);
  const XMLSellEvent* sale = stock ? findSale(*stock, date, number) : nullptr;
  return sale && deleteSale(*sale);
}

bool SharePortfolioUser::deleteSale(const XMLSellEvent& sale) {
  const SaleDeletion deletion(sale);
  const Date earliest = std::min(deletion.bought, sale.sold());
  for (const auto& line : {deletion.proceeds, deletion.cost})
    if (line)
      m_portfolio.cashEvents().remove(*line->event);
  removeSale(sale);
  m_capitalRecord.recordsChangedFrom(earliest);
  if (deletion.proceeds || deletion.cost)
    tellCashChanged();
  return deletion.proceeds && deletion.cost;
}

bool SharePortfolioUser::undoSale(const XMLSellEvent& sale) {
  const SaleDeletion deletion(sale);
  // Until its sale the parcel counted as held all the same.
  const Date earliest = sale.sold();
  giveBack(sale, deletion.rest);
  if (deletion.proceeds)
    m_portfolio.cashEvents().remove(*deletion.proceeds->event);
  removeSale(sale);
  m_capitalRecord.recordsChangedFrom(earliest);
  if (deletion.proceeds)
    tellCashChanged();
  return deletion.proceeds.has_value();
}

void SharePortfolioUser::giveBack(const XMLSellEvent& sale, const XMLBuyEvent* rest) {
  // A file may hold a code twice.
  XMLHeldShare& stock = rest ? elementAs<XMLHeldShare>(*rest->parent()) : heldShareFor(sale.code());
  if (!rest) {
    takeKnownSplits(parcelOfSale(sale), sale.sold(), FAR_OFF);
    sortInLast(stock);
    return;
  }
  const auto parcels = stock.parcels();
  XMLBuyEvent& parcel = *std::find_if(parcels.begin(), parcels.end(),
                                      [rest](const XMLBuyEvent& other) { return &other == rest; });
  parcel.setNumberText(recordedNumberText(parcel.number() + sale.number()));
  parcel.setBrokerage(parcel.brokerage() + sale.brokerage());
  if (const String comment = boughtComment(sale, parcel); parcel.comment().empty() && !comment.empty())
    parcel.setComment(comment);
}

XMLBuyEvent& SharePortfolioUser::parcelOfSale(const XMLSellEvent& sale) {
  XMLBuyEvent& parcel = heldShareFor(sale.code()).parcels().add();
  parcel.copyPurchase(sale);
  if (const String comment = boughtComment(sale, parcel); !comment.empty())
    parcel.setComment(comment);
  copyAdjustments(sale, parcel, FAR_OFF);
  return parcel;
}

/// What the sale has kept, which sales of earlier versions have not. That of a reinvestment follows its
/// dividend, by which it is found again.
String SharePortfolioUser::boughtComment(const XMLSellEvent& sale, const XMLBuyEvent& parcel) const {
  const String kept = sale.buyComment();
  if (!kept.empty() && !kept.startsWith(dividendDescriptionStart(parcel.code())))
    return kept;
  const String reinvested = reinvestmentComment(parcel);
  return reinvested.empty() ? kept : reinvested;
}

String SharePortfolioUser::reinvestmentComment(const XMLBuyEvent& parcel) const {
  for (const XMLDividendEvent& dividend : portfolio().dividends())
    if (dividend.code() == parcel.code() && dividend.received() == parcel.bought() &&
        showsTheSame(dividend.drpShares(), parcel.number(), 4) &&
        showsTheSame(dividend.drpRate(), parcel.price(), 4))
      return dividendDescription(dividend.code(), dividend.rate(), dividend.number());
  return String();
}

void SharePortfolioUser::removeSale(const XMLSellEvent& sale) {
  auto& stock = elementAs<XMLSoldShare>(*sale.parent());
  stock.sales().remove(sale);
  if (stock.sales().empty())
    m_portfolio.soldShares().remove(stock);
}

} // namespace Tallymoor
