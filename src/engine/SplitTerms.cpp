#include "engine/SplitTerms.h"
#include "engine/PortfolioEvents.h"
#include "engine/SaleCash.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"
#include <cmath>

namespace Tallymoor {

namespace {

/// Calls with the factor of each adjustment that counts by the day.
template <class Use>
void forEachFactor(const XMLElement& event, const Date& day, Use use) {
  if (dateValue(event, u"BuyDate") >= day)
    return;
  for (std::size_t i = 0; i < event.numSubElements(u"Adjustments"); ++i) {
    const XMLElement& adjustment = event.subElement(u"Adjustments", i);
    if (dateValue(adjustment, u"StartDate") <= day)
      use(longValue(adjustment, u"Factor"));
  }
}

SharesAt recordedShares(const XMLElement& event) {
  return {doubleValue(event, u"NumHeld"), doubleValue(event, u"BuyPrice")};
}

/// The number with the fewest decimals that is recorded as this one is: of 300 shares, 100 are recorded as
/// 33.333333 before their 3:1 split, and are 100 all the same.
double asTyped(const XMLElement& sale, const Date& day, double number) {
  const String recorded = recordedNumberText(doubleValue(sale, u"NumHeld"));
  for (int decimals = 2; decimals < 6; ++decimals) {
    const double candidate = String::fromDouble(number, decimals).toDouble();
    if (recordedNumberText(sharesAsBought(sale, day, {candidate, 0.0}).number) == recorded)
      return candidate;
  }
  return number;
}

/// A sale's shares as of its own day, by the splits that it tells of.
SharesAt sharesByItsSplits(const XMLElement& sale) {
  const Date sold = dateValue(sale, u"SellDate");
  SharesAt shares = sharesOn(sale, sold);
  shares.number = asTyped(sale, sold, shares.number);
  return shares;
}

} // namespace

void applyFactor(std::int32_t factor, SharesAt& shares) {
  const double magnitude = std::abs(double(factor));
  if (factor > 0) {
    shares.number *= magnitude;
    shares.price /= magnitude;
  } else {
    shares.number /= magnitude;
    shares.price *= magnitude;
  }
}

SharesAt sharesOn(const XMLElement& event, const Date& day) {
  SharesAt shares = recordedShares(event);
  forEachFactor(event, day, [&shares](std::int32_t factor) { applyFactor(factor, shares); });
  return shares;
}

SharesAt sharesAsBought(const XMLElement& event, const Date& day, const SharesAt& shares) {
  SharesAt one{1.0, 1.0};
  forEachFactor(event, day, [&one](std::int32_t factor) { applyFactor(factor, one); });
  return {shares.number * one.price, shares.price * one.number};
}

double sharesBetween(const XMLElement& event, const Date& from, const Date& to) {
  SharesAt one{1.0, 1.0};
  for (std::size_t i = 0; i < event.numSubElements(u"Adjustments"); ++i) {
    const XMLElement& adjustment = event.subElement(u"Adjustments", i);
    if (const Date start = dateValue(adjustment, u"StartDate"); start > from && start <= to)
      applyFactor(longValue(adjustment, u"Factor"), one);
  }
  return one.number;
}

bool isSplitBy(const XMLElement& event, const Date& day) {
  bool split = false;
  forEachFactor(event, day, [&split](std::int32_t factor) { split |= std::abs(double(factor)) != 1.0; });
  return split;
}

bool isRecordedAsSold(const XMLElement& sale) {
  if (!isSplitBy(sale, dateValue(sale, u"SellDate")))
    return false;
  const XMLElement* portfolio = portfolioOf(sale);
  return portfolio && !findProceeds(*portfolio, sale, sharesByItsSplits(sale).number) &&
         findProceeds(*portfolio, sale, recordedShares(sale).number);
}

SharesAt sharesAsSold(const XMLElement& sale) {
  return sharesAsSold(sale, isRecordedAsSold(sale));
}

SharesAt sharesAsSold(const XMLElement& sale, bool recordedAsSold) {
  const bool split = !recordedAsSold && isSplitBy(sale, dateValue(sale, u"SellDate"));
  return split ? sharesByItsSplits(sale) : recordedShares(sale);
}

std::optional<std::size_t> findAdjustment(const XMLElement& event, const Date& day) {
  const String text = dayText(day);
  for (std::size_t i = 0; i < event.numSubElements(u"Adjustments"); ++i)
    if (textValue(event.subElement(u"Adjustments", i), u"StartDate") == text)
      return i;
  return std::nullopt;
}

void copyAdjustments(const XMLElement& from, XMLElement& to, const Date& upTo) {
  for (std::size_t i = 0; i < from.numSubElements(u"Adjustments"); ++i) {
    const XMLElement& adjustment = from.subElement(u"Adjustments", i);
    if (dateValue(adjustment, u"StartDate") <= upTo)
      to.addSubElement(adjustment.clone(&newElement<XMLSplitAdjustment>), u"Adjustments");
  }
}

} // namespace Tallymoor
