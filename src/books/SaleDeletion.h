#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <optional>

namespace Tallymoor {

class XMLBuyEvent;
class XMLCashEvent;
class XMLSellEvent;

/// What deleting a recorded sale will do to the cash and the shares. The sale alone can go, so that its
/// shares are held again, or the purchase of its shares goes with it.
struct SaleDeletion {
  struct CashLine {
    const XMLCashEvent* event;
    Date day;
    double value;
    String description;
  };

  /// The sale must belong to a portfolio.
  explicit SaleDeletion(const XMLSellEvent& sale);

  double number;   ///< shares of the day of sale
  double buyPrice; ///< of the day of sale, too
  Date bought;
  double proceedsValue;
  double costValue;
  std::optional<CashLine> proceeds; ///< nothing if the cash has no such entry
  /// The entry of the purchase of exactly these shares; nothing if they were only a part of it.
  std::optional<CashLine> cost;
  /// The parcel that holds the rest of the purchase, to which the shares go back; null if there is none.
  const XMLBuyEvent* rest;
};

} // namespace Tallymoor
