#include "engine/DividendFigures.h"
#include "engine/FrankingCredit.h"
#include "foundation/Amounts.h"
#include "xml/Leaves.h"

namespace Tallymoor {

const String& DividendFigures::code() const {
  return textValue(m_dividend, u"Code");
}

Date DividendFigures::received() const {
  return dateValue(m_dividend, u"ReceiveDate");
}

double DividendFigures::numHeld() const {
  return doubleValue(m_dividend, u"NumHeld");
}

double DividendFigures::rate() const {
  return doubleValue(m_dividend, u"Rate");
}

const String& DividendFigures::rateText() const {
  return textValue(m_dividend, u"Rate");
}

double DividendFigures::percentFranked() const {
  return doubleValue(m_dividend, u"PercentFranked");
}

double DividendFigures::frankingCredit() const {
  return Tallymoor::frankingCredit(numHeld(), rate(), percentFranked());
}

bool DividendFigures::isReinvested() const {
  return tenThousandths(doubleValue(m_dividend, u"DRPShares")) > 0;
}

String DividendFigures::receivedAs() const {
  if (!isReinvested())
    return u"Cash";
  return String::fromDouble(doubleValue(m_dividend, u"DRPShares"), 2) + u" shares at " +
         textValue(m_dividend, u"DRPRate");
}

String DividendFigures::foreignSource() const {
  return m_dividend.numSubElements(u"ForeignDividend") > 0 ? textValue(m_dividend, u"ForeignDividend")
                                                           : String();
}

double DividendFigures::withholdingTax() const {
  return m_dividend.numSubElements(u"WithholdingTax") > 0 ? doubleValue(m_dividend, u"WithholdingTax") : 0.0;
}

} // namespace Tallymoor
