#pragma once
#include "foundation/String.h"
#include <string>

namespace Tallymoor {

/// Puts "(key)" in the place of a user's key, as it is and as it stands in addresses, since sources repeat
/// keys in their answers. An empty key changes nothing.
void maskKey(std::string& text, const String& key);

} // namespace Tallymoor
