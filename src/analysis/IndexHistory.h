#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

/// Brings the prices of a comparison index into the cache before figures of many days are computed from them,
/// page by page and not day by day.
///
/// GUI thread, under the big mutex.
namespace IndexHistory {

/// Fetches what is not known from the oldest to the newest of these days, which are given newest first. The
/// user may be asked once about a failure; see FetchQuestions.
void fetch(const String& code, const std::vector<Date>& days);

/// True when the price of the day is known with no fetch.
bool isKnown(const String& code, const Date& day);

} // namespace IndexHistory

} // namespace Tallymoor
