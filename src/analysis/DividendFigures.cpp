#include "analysis/DividendFigures.h"
#include "analysis/FrankingCredit.h"
#include "foundation/Amounts.h"

namespace Tallymoor {

double DividendFigures::frankingCredit() const {
  return Tallymoor::frankingCredit(numHeld(), rate(), percentFranked());
}

bool DividendFigures::isReinvested() const {
  return tenThousandths(m_dividend.drpShares()) > 0;
}

String DividendFigures::receivedAs() const {
  if (!isReinvested())
    return u"Cash";
  return String::fromDouble(m_dividend.drpShares(), 2) + u" shares at " + m_dividend.drpRateText();
}

} // namespace Tallymoor
