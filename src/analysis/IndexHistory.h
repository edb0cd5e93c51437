#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

/// The prices of a comparison index in the cache, from which figures of many days are computed.
///
/// GUI thread, under the big mutex.
namespace IndexHistory {

/// Has what is not known from the oldest to the newest of these days, which are given newest first, fetched
/// in the background. Once that has failed, the user may be asked about it; see FetchQuestions.
void request(const String& code, const std::vector<Date>& days);

/// True when the price of the day is known with no fetch.
bool isKnown(const String& code, const Date& day);

} // namespace IndexHistory

} // namespace Tallymoor
