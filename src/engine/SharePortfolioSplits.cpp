// Share splits: what a parcel was worth as of a day, and how a jump of the price becomes an adjustment.
#include "engine/PortfolioEvents.h"
#include "engine/SharePortfolioUser.h"
#include "engine/SplitTerms.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <cmath>

namespace Tallymoor {

namespace {

constexpr std::int32_t LEAST_FACTOR = 1;
constexpr std::int32_t LARGEST_FACTOR = 1000000;

std::int32_t roundedFactor(double ratio) {
  const double bounded = std::clamp(ratio, double(LEAST_FACTOR), double(LARGEST_FACTOR));
  return static_cast<std::int32_t>(bounded + 0.5);
}

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

XMLElement& adjustmentFor(XMLElement& event, const Date& date) {
  if (const auto place = findAdjustment(event, date))
    return event.subElement(u"Adjustments", *place);
  return event.addSubElement(new XMLSplitAdjustment, u"Adjustments");
}

/// Copies from a stock's parcels or sales the splits between the two days, the last one included, that the
/// event does not know.
void takeSplitsOf(const XMLElement& stock, std::u16string_view events, XMLElement& event, const Date& after,
                  const Date& last) {
  for (std::size_t i = 0; i < stock.numSubElements(events); ++i) {
    const XMLElement& other = stock.subElement(events, i);
    for (std::size_t j = 0; j < other.numSubElements(u"Adjustments"); ++j) {
      const XMLElement& adjustment = other.subElement(u"Adjustments", j);
      const Date start = dateValue(adjustment, u"StartDate");
      if (start > after && start <= last && !findAdjustment(event, start))
        event.addSubElement(adjustment.clone(&newElement<XMLSplitAdjustment>), u"Adjustments");
    }
  }
}

String splitTitle(bool reverse) {
  return reverse ? u"Possible reverse share split (share merge)" : u"Possible share split";
}

String splitQuestion(const String& code, const Date& date, std::int32_t factor, bool reverse) {
  const String kind = reverse ? u"reverse share split" : u"share split";
  const String confirmed = reverse ? u"reverse split" : u"share split";
  return u"A possible " + kind + u" was detected for the stock\nwith code " + code +
         u" around the day of \n" + date.toString(DATE_DISPLAY_LOCAL) + u" at a value of " +
         String::fromLong(factor) + u":1.\nPlease confirm the " + confirmed +
         u" ratio, or press cancel\nif this was just stock value movement.";
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
  const auto lacksAdjustment = [](const XMLElement& event) {
    return event.numSubElements(u"Adjustments") == 0;
  };
  std::size_t index = 0;
  if (const XMLElement* held = findHeldShare(code, index))
    for (std::size_t i = 0; i < held->numSubElements(u"BuyEvents"); ++i) {
      const XMLElement& parcel = held->subElement(u"BuyEvents", i);
      if (wasHeldBefore(parcel, date) && lacksAdjustment(parcel))
        return false;
    }
  if (const XMLElement* sold = findSoldShare(code, index))
    for (std::size_t i = 0; i < sold->numSubElements(u"SellEvents"); ++i) {
      const XMLElement& sale = sold->subElement(u"SellEvents", i);
      if (wasHeldAcross(sale, date) && lacksAdjustment(sale))
        return false;
    }
  return true;
}

void SharePortfolioUser::recordAdjustment(const String& code, const Date& date, std::int32_t factor,
                                          bool reverse) {
  std::size_t index = 0;
  if (XMLElement* held = findHeldShare(code, index))
    for (std::size_t i = 0; i < held->numSubElements(u"BuyEvents"); ++i) {
      XMLElement& parcel = held->subElement(u"BuyEvents", i);
      if (wasHeldBefore(parcel, date))
        setAdjustment(adjustmentFor(parcel, date), date, factor, reverse);
    }
  if (XMLElement* sold = findSoldShare(code, index))
    for (std::size_t i = 0; i < sold->numSubElements(u"SellEvents"); ++i) {
      XMLElement& sale = sold->subElement(u"SellEvents", i);
      if (wasHeldAcross(sale, date))
        setAdjustment(adjustmentFor(sale, date), date, factor, reverse);
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
  return checkPriceForSplit(code, date).price;
}

SharePortfolioUser::CheckedPrice SharePortfolioUser::checkPriceForSplit(const String& code,
                                                                        const Date& date) {
  const double today = sharePriceFor(code, date, false);
  const double yesterday = sharePriceFor(code, date.plusDays(-1), false);
  const double ratio = today / yesterday;
  bool asked = false;
  if (ratio < 1 / splitRatioDetect)
    asked = askForSplit(code, date, yesterday / today, false);
  else if (ratio > reverseSplitRatioDetect)
    asked = askForSplit(code, date, ratio, true);
  return {today, asked};
}

bool SharePortfolioUser::askForSplit(const String& code, const Date& date, double ratio, bool reverse) {
  if (inBackgroundPass || isAdjusted(code, date))
    return false;
  const std::int32_t factor = roundedFactor(ratio);
  const auto answer = UserInteraction::Instance().askWholeNumber(
      splitTitle(reverse), splitQuestion(code, date, factor, reverse), LEAST_FACTOR, LARGEST_FACTOR, factor);
  // A No is recorded as well, so that the same question never comes twice.
  recordAdjustment(code, date, answer.value_or(1), reverse);
  return true;
}

} // namespace Tallymoor
