#include "analysis/HoldingOnDay.h"
#include "analysis/ShareAsOfDay.h"
#include "books/SharePortfolioUser.h"
#include "books/SplitTerms.h"
#include "market/TallymoorInternet.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

std::optional<HeldOnDay> heldOn(const XMLHeldShare& heldShare, const Date& day) {
  std::optional<HeldOnDay> sum;
  for (const XMLBuyEvent& parcel : heldShare.parcels()) {
    const Date bought = parcel.bought();
    if (bought > day)
      continue;
    const SharesAt shares = sharesOn(parcel, day);
    if (!sum)
      sum = HeldOnDay{{}, bought, {}};
    sum->earliest = std::min(sum->earliest, bought);
    sum->cost.number += shares.number;
    sum->cost.value += shares.number * shares.price;
    if (!parcel.comment().empty())
      sum->comments.push_back(parcel.comment());
  }
  return sum;
}

std::optional<HeldOnDay> heldOn(const SharePortfolioUser& portfolio, const String& code, double numberOnDay,
                                const Date& day) {
  if (const auto ofThatDay = shareWithParcelsSoldSince(portfolio, code, numberOnDay, day))
    return heldOn(*ofThatDay, day);
  const XMLHeldShare* share = portfolio.findHeldShare(code);
  return share ? heldOn(*share, day) : std::nullopt;
}

double shownPrice(const SharePortfolioUser& portfolio, const String& code, const Date& day) {
  if (day >= Date::realToday())
    return portfolio.sharePriceFor(code, day, true);
  // With the record's price the value of the shares agrees with the capital.
  if (const std::optional<DayPrice> recorded = portfolio.capitalRecord().priceOn(code, day))
    return recorded->price;
  return TallymoorInternet::Instance().historicalPrice(code, day, true);
}

} // namespace Tallymoor
