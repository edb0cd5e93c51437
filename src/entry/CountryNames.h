#pragma once
#include "foundation/String.h"
#include <set>

namespace Tallymoor {

class SharePortfolioUser;

/// Countries that a foreign dividend may well come from: those of dividends recorded before, and those that
/// the program knows as countries of residence. Without a portfolio the latter alone.
std::set<String> likelyCountries(const SharePortfolioUser* portfolio);

} // namespace Tallymoor
