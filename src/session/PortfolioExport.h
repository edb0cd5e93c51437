#pragma once
#include "foundation/String.h"

namespace Tallymoor {

class XMLPortfolios;

/// Writes the records to this file, and keeps its folder as lastTransferFolder. Throws Exception when it
/// can't be written; an older file then stands. Under the big mutex.
void writeExport(const String& path, XMLPortfolios& records);

} // namespace Tallymoor
