#pragma once
#include <optional>

namespace Tallymoor {

/// Growth in percent from one capital to another, apart from money put in (positive) or taken out meanwhile,
/// whose timing plays no part. Nothing when the capital at the start shows as zero or the result is not
/// finite.
std::optional<double> gainPercent(double now, double then, double externalFlow);

/// Growth of an index in percent. Nothing when either close shows as zero or the result is not finite.
std::optional<double> indexGainPercent(double now, double then);

} // namespace Tallymoor
