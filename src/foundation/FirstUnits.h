#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <unicode/utf16.h>

namespace Tallymoor {

/// The first units of a text, at most length. Doesn't split a surrogate pair.
inline String firstUnits(const String& text, std::size_t length) {
  if (text.size() <= length)
    return text;
  const bool splitsPair = length > 0 && U16_IS_LEAD(text[length - 1]);
  return text.substr(0, splitsPair ? length - 1 : length);
}

} // namespace Tallymoor
