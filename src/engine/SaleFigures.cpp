#include "engine/SaleFigures.h"
#include "engine/Gains.h"
#include "xml/Leaves.h"

namespace Tallymoor {

const String& SaleFigures::code() const {
  return textValue(*m_sale.parent(), u"Code");
}

Date SaleFigures::bought() const {
  return dateValue(m_sale, u"BuyDate");
}

Date SaleFigures::sold() const {
  return dateValue(m_sale, u"SellDate");
}

double SaleFigures::sellPrice() const {
  return doubleValue(m_sale, u"SellPrice");
}

double SaleFigures::totalBrokerage() const {
  return doubleValue(m_sale, u"BuyBrokerage") + doubleValue(m_sale, u"SellBrokerage");
}

std::optional<double> SaleFigures::grossGain() const {
  return percentOf(sellPrice() - buyPrice(), buyPrice());
}

std::optional<double> SaleFigures::netGain() const {
  return percentOf(netProfit(), grossCost());
}

} // namespace Tallymoor
