#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// Full name of the file that holds a portfolio's capital record: the name and "CapRecord.xml" in the user's
/// data folder.
String capitalRecordFile(const String& portfolioName);

} // namespace Tallymoor
