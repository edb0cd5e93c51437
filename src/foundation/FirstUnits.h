#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <unicode/utf16.h>

namespace Tallymoor {

/// The text's beginning, at most so many units; no character is cut in two.
inline String firstUnits(const String& text, std::size_t length) {
  if (text.size() <= length)
    return text;
  const bool splitsPair = length > 0 && U16_IS_LEAD(text[length - 1]);
  return text.substr(0, splitsPair ? length - 1 : length);
}

} // namespace Tallymoor
