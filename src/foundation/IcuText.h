#pragma once
#include "foundation/String.h"
#include <unicode/unistr.h>

namespace Tallymoor {

/// Converts ICU text.
String fromIcu(const icu::UnicodeString& text);

/// True for invisible direction marks. ICU adds them to numbers and dates of right-to-left scripts; a text
/// with them can't be read back.
bool isDirectionMark(char16_t unit);

} // namespace Tallymoor
