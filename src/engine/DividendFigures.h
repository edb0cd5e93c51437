#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"

namespace Tallymoor {

class XMLElement;

/// What a recorded dividend (DividendEvent) paid. Reads the record at each call and refers to it.
class DividendFigures {
public:
  explicit DividendFigures(const XMLElement& dividend) : m_dividend(dividend) {}

  const String& code() const;
  Date received() const;
  double numHeld() const;
  double rate() const;
  /// The text as it was recorded, with all its decimals.
  const String& rateText() const;
  /// The gross amount, whether it was paid out or reinvested.
  double value() const { return rate() * numHeld(); }
  double percentFranked() const;
  double frankingCredit() const;
  bool isReinvested() const;
  /// "Cash", or the shares that it was reinvested in.
  String receivedAs() const;
  /// The country; empty for a domestic dividend.
  String foreignSource() const;
  double withholdingTax() const;

private:
  const XMLElement& m_dividend;
};

} // namespace Tallymoor
