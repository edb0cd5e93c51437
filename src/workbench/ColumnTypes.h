#pragma once
#include "xml/LocatorDocuments.h"

namespace Tallymoor {

// Conversion between column types and their names in documents.

String columnTypeName(ColumnType type);
/// COLUMN_TYPE_NONE if the name is unknown.
ColumnType columnTypeNamed(const String& name);

} // namespace Tallymoor
