#pragma once
#include "foundation/String.h"

namespace Tallymoor {

class Column;

/// The user's choice of a table's columns, kept in the settings: a section for each table, with a column's
/// title as key. GUI thread only, under the big mutex.
class ColumnChoice {
public:
  /// Drops, once for each table, a choice from before the choices were marked.
  explicit ColumnChoice(const String& tableName);

  bool isVisible(const Column& column) const;
  void setVisible(const Column& column, bool visible);
  /// Notes a column that is hidden by default, unless the user has made a choice.
  void declare(const Column& column);

  /// A table has another name from now on, and keeps its choice; one that was left under the new name goes.
  static void rename(const String& oldTableName, const String& newTableName);

private:
  String m_section;
};

} // namespace Tallymoor
