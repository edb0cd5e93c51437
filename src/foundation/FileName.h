#pragma once
#include "foundation/String.h"
#include <cstddef>

namespace Tallymoor {

/// A file name part for a stock code, different for each code. Characters not allowed in file names become
/// %XX, a lone surrogate %uXXXX. A long code is shortened and gets a hash, so that name and bytesBeside
/// further bytes fit into NAME_MAX.
String fileNameFor(const String& code, std::size_t bytesBeside = 0);

} // namespace Tallymoor
