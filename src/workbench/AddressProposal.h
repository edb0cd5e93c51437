#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// An address as it was used once, with variables in place of what differs from request to request: the code
/// or its part before the market suffix, the key, and, where the answer holds past days, the first and the
/// second day in it as the range.
String proposeAddress(const String& address, const String& code, const String& key, bool hasRange);

/// The address with "(key)" in place of the key, for messages.
String addressForShow(const String& address, const String& key);

} // namespace Tallymoor
