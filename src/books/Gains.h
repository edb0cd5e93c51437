#pragma once
#include <optional>

namespace Tallymoor {

/// The value, or nothing if a division or power made it infinite or no number.
std::optional<double> finiteOrNothing(double value);

/// Growth in percent from one capital to another, apart from money put in (positive) or taken out meanwhile,
/// whose timing plays no part. Nothing when the capital at the start shows as zero or the result is not
/// finite.
std::optional<double> gainPercent(double now, double then, double externalFlow);

/// The part in percent of the whole; nothing where that is not finite.
std::optional<double> percentOf(double part, double whole);

/// Growth of an index in percent. Nothing when either close shows as zero or the result is not finite.
std::optional<double> indexGainPercent(double now, double then);

/// The growth a year, in percent, that compounds to a growth over that many years: the n-th root of the
/// growth factor (the compound annual growth rate of the textbooks). Nothing if more than all was lost, no
/// time has passed, or the result is not finite.
std::optional<double> annualise(double gainPercent, double years);

} // namespace Tallymoor
