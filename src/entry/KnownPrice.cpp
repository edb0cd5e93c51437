#include "entry/KnownPrice.h"
#include "books/RecordedSplits.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Amounts.h"
#include "market/TallymoorInternet.h"

namespace Tallymoor {

namespace {

double knownOfTheDayItself(TallymoorInternet& gateway, const String& code, const Date& day) {
  if (day == Date::realToday() && gateway.priceUpdater().hasCode(code)) {
    const double price = gateway.priceUpdater().getCurrentPrice(code);
    if (!showsAsZero(price))
      return price;
  }
  const auto close = gateway.closeOn(code, day);
  return close ? close->close : 0.0;
}

} // namespace

KnownPrice knownPrice(const String& code, const Date& day, const SharePortfolioUser* portfolio) {
  if (code.empty() || !TallymoorInternet::exists())
    return {};
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  if (const double price = knownOfTheDayItself(gateway, code, day); !showsAsZero(price))
    return {price, day};
  const auto last = gateway.lastCloseBefore(code, day);
  if (!last)
    return {};
  const double shares =
      portfolio ? RecordedSplits(portfolio->holdings(), code).sharesBetween(last->day, day) : 1.0;
  return {last->close / shares, last->day};
}

KnownPrice priceOfDay(const String& code, const Date& day, const SharePortfolioUser* portfolio) {
  if (!code.empty() && day < Date::realToday() && TallymoorInternet::exists()) {
    TallymoorInternet& gateway = TallymoorInternet::Instance();
    gateway.completeHistory({{code, day, day, HistoryNeed::Kind::Backward}}, nullptr);
    if (const auto close = gateway.closeOn(code, day))
      return {close->close, day};
  }
  return knownPrice(code, day, portfolio);
}

} // namespace Tallymoor
