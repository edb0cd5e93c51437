#include "entry/KnownPrice.h"
#include "foundation/Amounts.h"
#include "market/TallymoorInternet.h"

namespace Tallymoor {

double knownPrice(const String& code) {
  if (code.empty() || !TallymoorInternet::exists())
    return 0.0;
  TallymoorInternet& internet = TallymoorInternet::Instance();
  if (!Date::hasFixedDate() && internet.priceUpdater().hasCode(code)) {
    const double price = internet.priceUpdater().getCurrentPrice(code);
    if (!showsAsZero(price))
      return price;
  }
  return internet.cachedClose(code, Date()).value_or(0.0);
}

} // namespace Tallymoor
