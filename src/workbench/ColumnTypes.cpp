#include "workbench/ColumnTypes.h"

namespace Tallymoor {

String columnTypeName(ColumnType type) {
  XMLTagLocator column;
  column.setType(type);
  return column.hasAttribute(u"type") ? column.attribute(u"type") : String();
}

ColumnType columnTypeNamed(const String& name) {
  XMLTagLocator column;
  column.setAttribute(u"type", name);
  return column.type();
}

} // namespace Tallymoor
