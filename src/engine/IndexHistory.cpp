#include "engine/IndexHistory.h"
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

bool IndexHistory::isHopeless(const Date& day) const {
  return m_lastDayWithout && day <= *m_lastDayWithout;
}

void IndexHistory::fetch(const String& code, const std::vector<Date>& days) {
  if (!(code == m_code))
    m_lastDayWithout.reset();
  m_code = code;
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  for (const Date& day : days) {
    if (isKnown(code, day) || isHopeless(day))
      continue;
    try {
      gateway.historicalPrice(code, day, true);
    } catch (const HTTPException&) {
      return; // may go better the next time
    } catch (const HTMLException&) {
      return;
    } catch (const Exception&) {
      if (!isLive(day))
        m_lastDayWithout = day;
      return;
    }
  }
}

} // namespace Tallymoor
