#pragma once
#include "xml/LocatorDocuments.h"

namespace Tallymoor {

// The types of columns by the names that documents use.

String columnTypeName(ColumnType type);
/// COLUMN_TYPE_NONE for a name that is not known.
ColumnType columnTypeNamed(const String& name);

} // namespace Tallymoor
