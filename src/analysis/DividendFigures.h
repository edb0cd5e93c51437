#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

/// What a recorded dividend paid. Reads the record at each call and refers to it.
class DividendFigures {
public:
  explicit DividendFigures(const XMLDividendEvent& dividend) : m_dividend(dividend) {}

  const String& code() const { return m_dividend.code(); }
  Date received() const { return m_dividend.received(); }
  double numHeld() const { return m_dividend.number(); }
  double rate() const { return m_dividend.rate(); }
  /// The text as it was recorded, with all its decimals.
  const String& rateText() const { return m_dividend.rateText(); }
  /// The gross amount, whether it was paid out or reinvested.
  double value() const { return rate() * numHeld(); }
  double percentFranked() const { return m_dividend.percentFranked(); }
  double frankingCredit() const;
  bool isReinvested() const;
  /// "Cash", or the shares that it was reinvested in.
  String receivedAs() const;
  /// The country; empty for a domestic dividend.
  const String& foreignSource() const { return m_dividend.foreignDividend(); }
  double withholdingTax() const { return m_dividend.withholdingTax(); }

private:
  const XMLDividendEvent& m_dividend;
};

} // namespace Tallymoor
