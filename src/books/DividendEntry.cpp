#include "books/DividendEntry.h"
#include "books/PortfolioEvents.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

DividendEntry DividendEntry::recorded(const XMLDividendEvent& event) {
  return {event.code(),
          event.received(),
          event.number(),
          event.rate(),
          event.wholePercentFranked(),
          event.drpShares(),
          event.drpRate(),
          event.foreignDividend(),
          event.withholdingTax()};
}

bool DividendEntry::isReinvested() const {
  return !showsAsZero(drpShares);
}

String DividendEntry::description() const {
  return dividendDescription(code, rate, number);
}

} // namespace Tallymoor
