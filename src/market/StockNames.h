#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// What companies and indexes are called. The records know codes alone, so a name that the data source told
/// is kept by its code in the settings, beside which it is shown. Under the big mutex.
namespace StockNames {

/// Empty where no name is known.
String nameOf(const String& code);

/// Keeps a name in place of the one before. It comes from a page, so control characters and blanks beyond one
/// are taken out and it is cut to what a table can show; an empty one, an empty code, or the code itself is
/// ignored.
void remember(const String& code, const String& name);

} // namespace StockNames

} // namespace Tallymoor
