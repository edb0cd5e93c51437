#include "books/Gains.h"
#include "foundation/Amounts.h"
#include <cmath>

namespace Tallymoor {

std::optional<double> finiteOrNothing(double value) {
  return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

std::optional<double> gainPercent(double now, double then, double externalFlow) {
  if (showsAsZero(then))
    return std::nullopt;
  return finiteOrNothing((now - then - externalFlow) / then * 100);
}

std::optional<double> percentOf(double part, double whole) {
  return finiteOrNothing(part / whole * 100);
}

std::optional<double> indexGainPercent(double now, double then) {
  if (showsAsZero(now) || showsAsZero(then))
    return std::nullopt;
  return finiteOrNothing((now - then) / then * 100);
}

std::optional<double> annualise(double gainPercent, double years) {
  const double factor = gainPercent / 100 + 1;
  // An even power would make a gain of a factor below nothing, and no root of it exists.
  if (!(factor >= 0.0) || !(years > 0.0))
    return std::nullopt;
  return finiteOrNothing((std::pow(factor, 1 / years) - 1) * 100);
}

} // namespace Tallymoor
