#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>

namespace Tallymoor {

class XMLDividendEvent;

/// A dividend as a form gives it.
struct DividendEntry {
  static DividendEntry recorded(const XMLDividendEvent& event);

  bool isReinvested() const;
  /// The gross amount: tax withheld abroad is noted for the user and changes no cash.
  double amount() const { return number * rate; }
  /// Of its cash entry, or of the parcel that it was reinvested in.
  String description() const;

  String code;
  Date date;
  double number; ///< of the shares that it was paid for
  double rate;   ///< for each
  std::int32_t percentFranked;
  // The shares that it was reinvested in, and the price of each; 0 for one that is paid out.
  double drpShares;
  double drpRate;
  String foreignDividend; ///< the country; empty for a domestic dividend
  double withholdingTax;
};

} // namespace Tallymoor
