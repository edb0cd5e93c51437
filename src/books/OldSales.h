#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <map>
#include <utility>
#include <vector>

namespace Tallymoor {

class XMLSellEvent;
class XMLSharePortfolio;

/// Sales that an earlier version recorded in shares of their own day, and that tell a split all
/// the same, since the user was asked for it again. Read by their splits they would be counted twice.
///
/// The cash knows better: its entry of the sale was made of the same number, and its entry of the purchase
/// names the price before the split. Where both say so, the sale is put into the terms of its purchase, as
/// every other one is.
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
