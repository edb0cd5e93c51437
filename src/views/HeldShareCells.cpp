#include "views/HeldShareCells.h"
#include "analysis/HoldingOnDay.h"
#include "books/SharePortfolioUser.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "market/StockNames.h"
#include "market/TallymoorInternet.h"
#include "views/CellFigures.h"
#include "views/HeldShareRow.h"
#include "views/IndicatorCells.h"
#include "views/SharesHeldTable.h"
#include "widgets/Row.h"
#include "xml/PortfolioRecords.h"
#include <utility>

namespace Tallymoor {

namespace {

const HeldShareRow& shareOf(const Row& row) {
  return row.payload<HeldShareRow>();
}

/// Number and cost of the row's parcels, adjusted for splits up to the date shown.
ParcelCost costOf(const HeldShareRow& share) {
  if (!share.buyEvent) {
    const std::optional<HeldOnDay> held = heldOn(*share.heldShare, Date());
    return held ? held->cost : ParcelCost();
  }
  const SharesAt shares = sharesOn(*share.buyEvent, Date());
  return {shares.number, shares.number * shares.price};
}

/// The parcel that was bought first, by its date; the one entered last of a day. Null without parcels.
const XMLBuyEvent* earliestParcel(const HeldShareRow& share) {
  const XMLBuyEvent* earliest = nullptr;
  Date day;
  for (const XMLBuyEvent& parcel : share.heldShare->parcels())
    if (const Date bought = parcel.bought(); !earliest || bought <= day) {
      earliest = &parcel;
      day = bought;
    }
  return earliest;
}

/// Price to compare today's with: that of the day, or what was paid first where the share was bought later;
/// in shares of today, as the number is.
double previousPrice(const HeldShareRow& share, const Date& date) {
  const XMLBuyEvent* first = earliestParcel(share);
  if (!first)
    return sharePriceOn(share, date);
  // Of all parcels the earliest one knows the most splits.
  const Date bought = first->bought();
  return bought > date ? first->price() / sharesBetween(*first, bought, Date())
                       : sharePriceOn(share, date) / sharesBetween(*first, date, Date());
}

/// True when another price stands in for that of the day shown.
bool isProvisional(const HeldShareRow& share) {
  const std::optional<DayPrice> price = share.portfolio->capitalRecord().priceOn(share.code, Date());
  return price && isStandIn(price->standing);
}

CellResult percentSince(Row& row, const Date& date) {
  const double previous = previousPrice(shareOf(row), date);
  if (showsAsZero(previous))
    return CellResult(0.0, CELL_PERCENT);
  return figure((cellValue(row, &HeldShareCells::priceNow) - previous) / previous * 100.0, CELL_PERCENT);
}

} // namespace

double sharePriceOn(const HeldShareRow& share, const Date& date) {
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  if (!Date::hasFixedDate()) {
    gateway.requirePrice(share.code, date);
    return share.portfolio->sharePriceFor(share.code, date, true);
  }
  if (!share.portfolio->capitalRecord().priceOn(share.code, date))
    gateway.requirePrice(share.code, date);
  return shownPrice(*share.portfolio, share.code, date);
}

double heldValueSince(const HeldShareRow& share, const Date& date) {
  const Date shown;
  double sum = 0.0;
  for (const XMLBuyEvent& parcel : std::as_const(*share.heldShare).parcels())
    if (const Date bought = parcel.bought(); bought <= shown)
      sum += bought > date ? parcel.number() * parcel.price()
                           : sharesOn(parcel, date).number * sharePriceOn(share, date);
  return sum;
}

namespace HeldShareCells {

CellResult name(Row& row) {
  return CellResult(StockNames::nameOf(shareOf(row).code));
}

CellResult number(Row& row) {
  const HeldShareRow& share = shareOf(row);
  return CellResult(share.numberOnDay ? *share.numberOnDay : costOf(share).number, CELL_NUMBER);
}

CellResult buyPrice(Row& row) {
  return figure(costOf(shareOf(row)).averagePrice(), CELL_PRICE);
}

CellResult priceNow(Row& row) {
  const HeldShareRow& share = shareOf(row);
  const double price = sharePriceOn(share, Date());
  if (share.numberOnDay)
    checkLimits(row, share.code, limitsInForce(row), price);
  return CellResult(price, CELL_PRICE);
}

CellResult purchaseValue(Row& row) {
  return CellResult(costOf(shareOf(row)).value, CELL_MONEY);
}

CellResult currentValue(Row& row) {
  CellResult value(cellValue(row, &priceNow) * cellValue(row, &number), CELL_MONEY);
  return isProvisional(shareOf(row)) ? value.setProvisional() : value;
}

CellResult dayMove(Row& row) {
  const double previous = previousPrice(shareOf(row), Date().plusDays(-1));
  if (showsAsZero(previous))
    return CellResult(String());
  return CellResult(cellValue(row, &priceNow) - previous, CELL_PRICE);
}

CellResult dayGain(Row& row) {
  return CellResult(cellValue(row, &dayMove) * cellValue(row, &number), CELL_MONEY);
}

CellResult dayPercent(Row& row) {
  return percentSince(row, Date().plusDays(-1));
}

CellResult weekPercent(Row& row) {
  return percentSince(row, Date().fridayBeforeLastWeekend());
}

CellResult monthPercent(Row& row) {
  return percentSince(row, Date().plusMonths(-1));
}

CellResult gainPercent(Row& row) {
  const double bought = cellValue(row, &buyPrice);
  return figure((cellValue(row, &priceNow) - bought) / bought * 100.0, CELL_PERCENT);
}

CellResult annualisedGainPercent(Row& row) {
  return annualised(row, &gainPercent, &daysHeld);
}

CellResult grossGain(Row& row) {
  const double held = cellValue(row, &number);
  return CellResult(cellValue(row, &priceNow) * held - cellValue(row, &buyPrice) * held, CELL_MONEY);
}

CellResult priceMinMax(Row& row) {
  return CellResult(PriceLimits::ofHeldShare(*shareOf(row).heldShare).text());
}

CellResult percentInMinMax(Row& row) {
  return percentInLimits(row, limitsInForce(row), &priceNow);
}

CellResult portfolioPercent(Row& row) {
  const SharePortfolioUser& portfolio = *shareOf(row).portfolio;
  const double total = portfolio.cashReserveToday() + portfolio.sharesValueToday();
  return figure(cellValue(row, &currentValue) / total * 100.0, CELL_PERCENT);
}

CellResult daysHeld(Row& row) {
  const HeldShareRow& share = shareOf(row);
  const Date shown;
  if (share.buyEvent)
    return CellResult(std::int32_t(shown.daysSince(share.buyEvent->bought())));
  const std::optional<HeldOnDay> held = heldOn(*share.heldShare, shown);
  return CellResult(held ? std::int32_t(shown.daysSince(held->earliest)) : 0);
}

CellResult buyDate(Row& row) {
  return CellResult(shareOf(row).buyEvent->bought());
}

CellResult comment(Row& row) {
  return CellResult(shareOf(row).buyEvent->comment());
}

} // namespace HeldShareCells

} // namespace Tallymoor
