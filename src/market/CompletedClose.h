#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <optional>

namespace Tallymoor {

/// The close of a day, fetched if it is missing and the gateway can; nothing where there is none. Asks and
/// throws nothing, and a day that the data source doesn't have, as before a stock was listed, is fetched once
/// a run (TallymoorInternet::completeHistory). GUI thread, under the big mutex.
std::optional<double> completedClose(const String& code, const Date& day);

} // namespace Tallymoor
