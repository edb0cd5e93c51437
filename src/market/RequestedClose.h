#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <optional>

namespace Tallymoor {

/// The close of a day if it is cached; nothing where there is none. One that is missing is fetched in the
/// background if the source may have it: then throws NotYetKnown (TallymoorInternet::requireHistory). Asks
/// nothing. GUI thread, under the big mutex.
std::optional<double> requestedClose(const String& code, const Date& day);

} // namespace Tallymoor
