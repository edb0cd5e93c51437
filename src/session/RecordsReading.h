#pragma once
#include "foundation/String.h"

namespace Tallymoor {

class XMLPortfolios;

/// Reads a records document of this user. Throws Exception when it is missing or can't be read.
void readRecordsDocument(XMLPortfolios& records, const String& path);

/// Makes the names of the portfolios such as a prompt would have taken, and all different. A file that was
/// edited by hand may hold others; they must not become markup or a path, nor hide another portfolio.
void cleanRecordNames(XMLPortfolios& records);

} // namespace Tallymoor
