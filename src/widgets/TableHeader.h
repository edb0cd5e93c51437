#pragma once
#include <fx.h>

namespace Tallymoor {

class Table;

/// The column header of a Table, which shows the help of the column under the mouse in the status line.
class TableHeader : public FXHeader {
  FXDECLARE(TableHeader)
public:
  /// Target and owner are the table; its messages carry this identifier.
  TableHeader(Table* table, FXSelector identifier);

  long onMotion(FXObject* sender, FXSelector selector, void* data);

protected:
  TableHeader() = default;

private:
  Table* m_table = nullptr;
};

} // namespace Tallymoor
