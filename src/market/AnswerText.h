#pragma once
#include "foundation/String.h"
#include <string>
#include <string_view>

namespace Tallymoor {

/// The bytes of an answer or file as UTF-8: by their byte order mark, else by the named encoding, else they
/// are UTF-8 or, where they can't be that, Windows' western one, in which most other CSV files are.
std::string utf8Of(std::string_view bytes, const String& encoding = String());

/// The encoding that a "Content-Type" names; empty if it names none.
String encodingIn(std::string_view contentType);

} // namespace Tallymoor
