#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// The form that names of portfolios, watchlists and indices have in the records, so that they can go into
/// documents and file names as they are: without the five characters that XML escapes, path separators and
/// control characters, without blanks at the ends and with single ones between words, cut to 60 units. Empty
/// if nothing usable remains.
String cleanName(const String& text);

} // namespace Tallymoor
