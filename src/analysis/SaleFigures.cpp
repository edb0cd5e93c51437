#include "analysis/SaleFigures.h"
#include "books/Gains.h"

namespace Tallymoor {

std::optional<double> SaleFigures::grossGain() const {
  return percentOf(sellPrice() - buyPrice(), buyPrice());
}

std::optional<double> SaleFigures::netGain() const {
  return percentOf(netProfit(), grossCost());
}

} // namespace Tallymoor
