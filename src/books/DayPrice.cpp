#include "books/DayPrice.h"

namespace Tallymoor {

namespace {

const String LAST_CLOSE = u"last-close";
const String TRANSACTION = u"transaction";

} // namespace

String standingName(PriceStanding standing) {
  switch (standing) {
  case PriceStanding::Open:
    return u"open";
  case PriceStanding::LastClose:
    return LAST_CLOSE;
  case PriceStanding::Transaction:
    return TRANSACTION;
  case PriceStanding::Final:
    break;
  }
  return String();
}

PriceStanding standingNamed(const String& name) {
  if (name.empty())
    return PriceStanding::Final;
  if (name == LAST_CLOSE)
    return PriceStanding::LastClose;
  return name == TRANSACTION ? PriceStanding::Transaction : PriceStanding::Open;
}

} // namespace Tallymoor
