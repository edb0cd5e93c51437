#include "engine/HoldingOnDay.h"
#include "engine/ShareAsOfDay.h"
#include "engine/SharePortfolioUser.h"
#include "market/TallymoorInternet.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

std::optional<HeldOnDay> heldOn(const SharePortfolioUser& portfolio, const XMLElement& heldShare,
                                const Date& day) {
  std::optional<HeldOnDay> sum;
  for (std::size_t i = 0; i < heldShare.numSubElements(u"BuyEvents"); ++i) {
    const XMLElement& parcel = heldShare.subElement(u"BuyEvents", i);
    const Date bought = dateValue(parcel, u"BuyDate");
    if (bought > day)
      continue;
    double number = 0.0, price = 0.0;
    portfolio.adjustedBuyEvent(parcel, day, number, price);
    if (!sum)
      sum = HeldOnDay{{}, bought, {}};
    sum->earliest = std::min(sum->earliest, bought);
    sum->cost.number += number;
    sum->cost.value += number * price;
    if (const String comment = textValue(parcel, u"Comment"); !comment.empty())
      sum->comments.push_back(comment);
  }
  return sum;
}

std::optional<HeldOnDay> heldOn(const SharePortfolioUser& portfolio, const String& code, double numberOnDay,
                                const Date& day) {
  if (const auto ofThatDay = shareWithParcelsSoldSince(portfolio, code, numberOnDay, day))
    return heldOn(portfolio, *ofThatDay, day);
  std::size_t index = 0;
  const XMLElement* share = portfolio.findHeldShare(code, index);
  return share ? heldOn(portfolio, *share, day) : std::nullopt;
}

double shownPrice(const SharePortfolioUser& portfolio, const String& code, const Date& day) {
  if (day >= Date::realToday())
    return portfolio.sharePriceFor(code, day, true);
  // With the record's price the shares come to what the capital says.
  if (const std::optional<DayPrice> recorded = portfolio.capitalRecord().priceOn(code, day))
    return recorded->price;
  return TallymoorInternet::Instance().historicalPrice(code, day, true);
}

} // namespace Tallymoor
