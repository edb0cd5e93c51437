#pragma once
#include "books/SplitTerms.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include "xml/PortfolioRecords.h"
#include <cstdint>
#include <optional>

namespace Tallymoor {

/// Cost, proceeds and profit of a recorded sale. Prices and numbers are those of the day of sale, after all
/// splits before it. Refers to the record; percentages are nothing if they are not finite.
class SaleFigures {
public:
  explicit SaleFigures(const XMLSellEvent& sale) : m_sale(sale), m_shares(sharesAsSold(sale)) {}

  const String& code() const { return m_sale.code(); }
  Date bought() const { return m_sale.bought(); }
  Date sold() const { return m_sale.sold(); }
  const String& comment() const { return m_sale.comment(); }
  std::int32_t daysHeld() const { return sold().daysSince(bought()); }
  double number() const { return m_shares.number; }
  double buyPrice() const { return m_shares.price; }
  double sellPrice() const { return m_sale.sellPrice(); }

  // Without brokerage.
  double grossCost() const { return buyPrice() * number(); }
  double grossSale() const { return sellPrice() * number(); }
  double grossProfit() const { return (sellPrice() - buyPrice()) * number(); }
  std::optional<double> grossGain() const;

  /// Of the purchase and of the sale.
  double totalBrokerage() const { return m_sale.brokerage() + m_sale.sellBrokerage(); }
  double netProfit() const { return grossProfit() - totalBrokerage(); }
  std::optional<double> netGain() const;

private:
  const XMLSellEvent& m_sale;
  SharesAt m_shares;
};

} // namespace Tallymoor
