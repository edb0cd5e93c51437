#include "entry/KnownPrice.h"
#include "foundation/Amounts.h"
#include "market/TallymoorInternet.h"

namespace Tallymoor {

double knownPrice(const String& code, const Date& day) {
  if (code.empty() || !TallymoorInternet::exists())
    return 0.0;
  TallymoorInternet& internet = TallymoorInternet::Instance();
  if (day == Date::realToday() && internet.priceUpdater().hasCode(code)) {
    const double price = internet.priceUpdater().getCurrentPrice(code);
    if (!showsAsZero(price))
      return price;
  }
  return internet.cachedClose(code, day).value_or(0.0);
}

double priceOfDay(const String& code, const Date& day) {
  if (!code.empty() && day < Date::realToday() && TallymoorInternet::exists())
    TallymoorInternet::Instance().completeHistory(code, day, day);
  return knownPrice(code, day);
}

bool isFarFrom(double price, double priceOfDay) {
  constexpr double FAR = 1.25;
  return price > priceOfDay * FAR || price * FAR < priceOfDay;
}

} // namespace Tallymoor
