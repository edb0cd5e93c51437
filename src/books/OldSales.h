#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <map>
#include <utility>
#include <vector>

namespace Tallymoor {

class XMLSellEvent;
class XMLSharePortfolio;

/// Sales that an earlier version recorded in shares of their own day and that have an adjustment all the
/// same, since the user was asked about the split again. Reading them by their adjustments would count the
/// split twice.
///
/// The cash entries show it: that of the sale was computed from the same number, and that of the purchase
/// names the price before the split. Where both agree, the sale is put into the terms of its purchase, like
/// every other sale.
class OldSales {
public:
  /// Reads the purchases among the portfolio's cash entries; later ones are not seen.
  explicit OldSales(const XMLSharePortfolio& portfolio);

  /// True when the sale was such a one; then its number and buying price are others now.
  bool mend(XMLSellEvent& sale) const;

private:
  std::map<std::pair<Date, String>, std::vector<double>> m_boughtAt; ///< prices by day and code
};

} // namespace Tallymoor
