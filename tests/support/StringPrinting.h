#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <ostream>

namespace Tallymoor {

// Prints our value types in GoogleTest failures. Include it wherever tests compare them.

inline void PrintTo(const String& text, std::ostream* out) {
  *out << '"' << text.toUTF8() << '"';
}

inline void PrintTo(const Date& date, std::ostream* out) {
  *out << date.toString(DATE_DISPLAY_DMY).toUTF8();
}

} // namespace Tallymoor
