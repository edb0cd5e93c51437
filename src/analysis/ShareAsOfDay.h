#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <memory>

namespace Tallymoor {

class SharePortfolioUser;
class XMLHeldShare;

/// A share as it was held at the end of a day, where parcels of it have been sold since: the parcels that are
/// still held, and those sold later; without limits. Null where the records themselves still hold all that
/// was held then. The number is that of the day's capital record.
std::unique_ptr<XMLHeldShare> shareWithParcelsSoldSince(const SharePortfolioUser& portfolio,
                                                        const String& code, double numberOnDay,
                                                        const Date& day);

} // namespace Tallymoor
