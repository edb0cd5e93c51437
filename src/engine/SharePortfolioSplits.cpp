// Share splits: what a parcel was worth as of a day, and how a jump of the price becomes an adjustment.
#include "engine/OldSales.h"
#include "engine/PortfolioEvents.h"
#include "engine/SharePortfolioUser.h"
#include "engine/SplitTerms.h"
#include "engine/SuspectedSplit.h"
#include "foundation/RunTimeSettings.h"
#include "xml/PortfolioRecords.h"
#include <cmath>

namespace Tallymoor {

namespace {

bool wasHeldBefore(const XMLElement& parcel, const Date& date) {
  return dateValue(parcel, u"BuyDate") < date;
}

bool wasHeldAcross(const XMLElement& sale, const Date& date) {
  return wasHeldBefore(sale, date) && dateValue(sale, u"SellDate") > date;
}

bool anyAdjustmentOn(const XMLElement* stock, std::u16string_view events, const Date& date) {
  if (!stock)
    return false;
  for (std::size_t i = 0; i < stock->numSubElements(events); ++i)
    if (findAdjustment(stock->subElement(events, i), date))
      return true;
  return false;
}

/// Copies from a stock's parcels or sales the splits between the two days, the last one included, that the
/// event does not know.
void takeSplitsOf(const XMLElement& stock, std::u16string_view events, XMLElement& event, const Date& after,
                  const Date& last) {
  for (std::size_t i = 0; i < stock.numSubElements(events); ++i) {
    const XMLElement& other = stock.subElement(events, i);
    const std::size_t known = event.numSubElements(u"Adjustments"); // what follows comes from this one
    for (std::size_t j = 0; j < other.numSubElements(u"Adjustments"); ++j) {
      const XMLElement& adjustment = other.subElement(u"Adjustments", j);
      const Date start = dateValue(adjustment, u"StartDate");
      if (start > after && start <= last && findAdjustment(event, start).value_or(known) >= known)
        event.addSubElement(adjustment.clone(&newElement<XMLSplitAdjustment>), u"Adjustments");
    }
  }
}

/// Puts the factors in the place of what is noted for the day.
void noteFactors(SharePortfolioUser& portfolio, XMLElement& event, const Date& date,
                 const std::vector<std::int32_t>& factors) {
  const String day = dayText(date);
  std::size_t noted = 0;
  for (std::size_t i = 0; i < event.numSubElements(u"Adjustments");) {
    XMLElement& adjustment = event.subElement(u"Adjustments", i);
    if (!(textValue(adjustment, u"StartDate") == day)) {
      ++i;
    } else if (noted < factors.size()) {
      portfolio.setAdjustment(adjustment, date, factors[noted++], false);
      ++i;
    } else {
      event.removeSubElement(u"Adjustments", i);
    }
  }
  for (; noted < factors.size(); ++noted)
    portfolio.setAdjustment(event.addSubElement(new XMLSplitAdjustment, u"Adjustments"), date, factors[noted],
                            false);
}

} // namespace

void SharePortfolioUser::adjustedBuyEvent(const XMLElement& event, const Date& date, double& number,
                                          double& price, bool numberOnly) const {
  const SharesAt shares = sharesOn(event, date);
  number = shares.number;
  if (!numberOnly)
    price = shares.price;
}

void SharePortfolioUser::adjustedSellEvent(const XMLElement& event, const Date& date, double& number,
                                           double& price) const {
  // A day on which no split counts leaves number and price as recorded.
  const SharesAt shares = sharesOn(event, wasHeldAcross(event, date) ? date : dateValue(event, u"BuyDate"));
  number = shares.number;
  price = shares.price;
}

void SharePortfolioUser::applyAdjustment(const XMLElement& adjustment, const Date& date, double& number,
                                         double& price) const {
  if (dateValue(adjustment, u"StartDate") > date)
    return;
  SharesAt shares{number, price};
  applyFactor(longValue(adjustment, u"Factor"), shares);
  number = shares.number;
  price = shares.price;
}

bool SharePortfolioUser::hasHeldAdjustment(const String& code, const Date& date) const {
  std::size_t index = 0;
  return anyAdjustmentOn(findHeldShare(code, index), u"BuyEvents", date);
}

bool SharePortfolioUser::hasSoldAdjustment(const String& code, const Date& date) const {
  std::size_t index = 0;
  return anyAdjustmentOn(findSoldShare(code, index), u"SellEvents", date);
}

bool SharePortfolioUser::isAdjusted(const String& code, const Date& date) const {
  std::size_t index = 0;
  if (const XMLElement* held = findHeldShare(code, index))
    for (std::size_t i = 0; i < held->numSubElements(u"BuyEvents"); ++i) {
      const XMLElement& parcel = held->subElement(u"BuyEvents", i);
      if (wasHeldBefore(parcel, date) && !findAdjustment(parcel, date))
        return false;
    }
  if (const XMLElement* sold = findSoldShare(code, index))
    for (std::size_t i = 0; i < sold->numSubElements(u"SellEvents"); ++i) {
      const XMLElement& sale = sold->subElement(u"SellEvents", i);
      if (wasHeldAcross(sale, date) && !findAdjustment(sale, date))
        return false;
    }
  return true;
}

void SharePortfolioUser::recordAdjustment(const String& code, const Date& date, std::int32_t factor,
                                          bool reverse) {
  recordAdjustments(code, date, {reverse ? -factor : factor});
}

void SharePortfolioUser::recordAdjustments(const String& code, const Date& date,
                                           const std::vector<std::int32_t>& factors) {
  std::size_t index = 0;
  if (XMLElement* held = findHeldShare(code, index))
    for (std::size_t i = 0; i < held->numSubElements(u"BuyEvents"); ++i) {
      XMLElement& parcel = held->subElement(u"BuyEvents", i);
      if (wasHeldBefore(parcel, date))
        noteFactors(*this, parcel, date, factors);
    }
  if (XMLElement* sold = findSoldShare(code, index))
    for (std::size_t i = 0; i < sold->numSubElements(u"SellEvents"); ++i) {
      XMLElement& sale = sold->subElement(u"SellEvents", i);
      if (wasHeldAcross(sale, date))
        noteFactors(*this, sale, date, factors);
    }
  mendOldSales();
}

void SharePortfolioUser::mendOldSales() {
  const OldSales old(m_portfolio);
  XMLElement& stocks = m_portfolio.subElement(u"SoldShares");
  for (std::size_t i = 0; i < stocks.numSubElements(u"SoldShares"); ++i) {
    XMLElement& stock = stocks.subElement(u"SoldShares", i);
    for (std::size_t j = 0; j < stock.numSubElements(u"SellEvents"); ++j) {
      XMLElement& sale = stock.subElement(u"SellEvents", j);
      if (old.mend(sale, textValue(stock, u"Code")))
        m_capitalRecord.recomputeFrom(dateValue(sale, u"BuyDate"));
    }
  }
}

void SharePortfolioUser::takeSplitsBetween(XMLElement& event, const String& code, const Date& bought,
                                           const Date& last) {
  for (std::size_t i = event.numSubElements(u"Adjustments"); i-- > 0;) {
    const Date start = dateValue(event.subElement(u"Adjustments", i), u"StartDate");
    if (start <= bought || start > last)
      event.removeSubElement(u"Adjustments", i);
  }
  takeKnownSplits(event, code, bought, last);
}

void SharePortfolioUser::takeKnownSplits(XMLElement& event, const String& code, const Date& after,
                                         const Date& last) {
  std::size_t index = 0;
  if (const XMLElement* held = findHeldShare(code, index))
    takeSplitsOf(*held, u"BuyEvents", event, after, last);
  if (const XMLElement* sold = findSoldShare(code, index))
    takeSplitsOf(*sold, u"SellEvents", event, after, last);
}

void SharePortfolioUser::setAdjustment(XMLElement& adjustment, const Date& date, std::int32_t factor,
                                       bool reverse) {
  adjustment.subElement(u"StartDate").setValue(dayText(date));
  adjustment.subElement(u"Factor").setValue(String::fromLong(reverse ? -std::int64_t(factor) : factor));
}

double SharePortfolioUser::priceWithSplitCheck(const String& code, const Date& date) {
  return checkPriceForSplit(code, date).price.price;
}

SharePortfolioUser::CheckedPrice SharePortfolioUser::checkPriceForSplit(const String& code,
                                                                        const Date& date) {
  const DayPrice today = dayPriceFor(code, date, false);
  const DayPrice yesterday = dayPriceFor(code, date.plusDays(-1), false);
  if (isStandIn(today.standing) || isStandIn(yesterday.standing))
    return {today, false};
  const auto split = SuspectedSplit::between(yesterday.price, today.price);
  return {today, split && askForSplit(code, date, *split)};
}

bool SharePortfolioUser::askForSplit(const String& code, const Date& date, const SuspectedSplit& split) {
  if (inBackgroundPass || isAdjusted(code, date))
    return false;
  recordAdjustments(code, date, split.ask(code, date));
  return true;
}

} // namespace Tallymoor
