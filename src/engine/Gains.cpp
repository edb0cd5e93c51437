#include "engine/Gains.h"
#include "foundation/Amounts.h"
#include <cmath>

namespace Tallymoor {

namespace {

std::optional<double> finite(double value) {
  return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

} // namespace

std::optional<double> gainPercent(double now, double then, double externalFlow) {
  if (showsAsZero(then))
    return std::nullopt;
  return finite((now - then - externalFlow) / then * 100);
}

std::optional<double> indexGainPercent(double now, double then) {
  if (showsAsZero(now) || showsAsZero(then))
    return std::nullopt;
  return finite((now - then) / then * 100);
}

} // namespace Tallymoor
