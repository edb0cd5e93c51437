#include "analysis/IndexHistory.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "market/TallymoorInternet.h"

namespace Tallymoor {

namespace {

/// While no view date is set, the price of today is the current one.
bool isLive(const Date& day) {
  return !Date::hasFixedDate() && day == Date();
}

} // namespace

bool IndexHistory::isKnown(const String& code, const Date& day) {
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  const PriceUpdater& updater = gateway.priceUpdater();
  if (isLive(day) && updater.hasCode(code) && !showsAsZero(updater.getCurrentPrice(code)))
    return true;
  return !showsAsZero(gateway.cachedClose(code, day).value_or(0.0));
}

void IndexHistory::request(const String& code, const std::vector<Date>& days) {
  if (days.empty())
    return;
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  if (gateway.requestHistory({code, days.back(), days.front(), HistoryNeed::Kind::Backward}))
    return;
  for (const Date& day : days) {
    if (isKnown(code, day))
      continue;
    if (gateway.isToBeFetched(code, day))
      return; // it lies before a day that is unavailable
    try {
      gateway.historicalPrice(code, day, true); // tells the user of a failure
    } catch (const Exception&) {
      return;
    }
  }
}

} // namespace Tallymoor
