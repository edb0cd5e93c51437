#include "market/RestingStatus.h"
#include "foundation/Date.h"
#include "market/PriceStatus.h"
#include "market/TallymoorInternet.h"

namespace Tallymoor {

namespace {

String pricesRemark() {
  if (!TallymoorInternet::exists())
    return String();
  PriceStatus& status = TallymoorInternet::Instance().priceStatus();
  if (status.isSampleMarket())
    return u" The prices are made up: they are those of the sample market.";
  return status.hasSourceOn() ? String() : String(u" No source of prices is on: see Tools, Prices.");
}

} // namespace

String restingStatusText() {
  if (!Date::hasFixedDate())
    return u"Ready." + pricesRemark();
  return u"You are looking at " + Date().toString(DATE_DISPLAY_LOCAL) + u", not at today." + pricesRemark();
}

} // namespace Tallymoor
