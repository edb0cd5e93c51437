#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// The brokerage that new purchases and sales begin with, from the settings.
double defaultBrokerage();

/// Asks whether a brokerage that differs from the default, by its text at two decimals, is to be the new
/// default; on Yes it is written to the settings at once.
void offerAsDefaultBrokerage(double brokerage, const String& question);

} // namespace Tallymoor
