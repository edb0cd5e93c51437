#pragma once
#include "foundation/String.h"

namespace Tallymoor {

class SharePortfolioUser;

/// Tells the user that the portfolio holds an event whose day can't be right, as a hand-edited file may:
/// what kind of event, what it is known by, and what is wrong with its day.
void tellOfWrongDate(const SharePortfolioUser& portfolio, const String& kind, const String& event,
                     const String& fault);

} // namespace Tallymoor
