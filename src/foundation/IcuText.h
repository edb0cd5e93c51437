#pragma once
#include "foundation/String.h"
#include <unicode/unistr.h>

namespace Tallymoor {

/// Text that ICU gives.
String fromIcu(const icu::UnicodeString& text);

/// True for the invisible marks that ICU puts beside numbers and dates of scripts written from right to left:
/// they would make a text read back as another one.
bool isDirectionMark(char16_t unit);

} // namespace Tallymoor
