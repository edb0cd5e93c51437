#pragma once
#include "engine/SplitTerms.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>
#include <optional>

namespace Tallymoor {

class XMLElement;

/// What a recorded sale (SellEvent) cost, brought in and made. Prices and numbers are those of the day of
/// sale, whatever splits came before it. Refers to the record; percentages are nothing where they are not
/// finite.
class SaleFigures {
public:
  explicit SaleFigures(const XMLElement& sale) : m_sale(sale), m_shares(sharesAsSold(sale)) {}

  const String& code() const;
  Date bought() const;
  Date sold() const;
  std::int32_t daysHeld() const { return sold().daysSince(bought()); }
  double number() const { return m_shares.number; }
  double buyPrice() const { return m_shares.price; }
  double sellPrice() const;

  // Without brokerage.
  double grossCost() const { return buyPrice() * number(); }
  double grossSale() const { return sellPrice() * number(); }
  double grossProfit() const { return (sellPrice() - buyPrice()) * number(); }
  std::optional<double> grossGain() const;

  /// Of the purchase and of the sale.
  double totalBrokerage() const;
  double netProfit() const { return grossProfit() - totalBrokerage(); }
  std::optional<double> netGain() const;

private:
  const XMLElement& m_sale;
  SharesAt m_shares;
};

} // namespace Tallymoor
