#pragma once
#include <fx.h>

namespace Tallymoor {

class Column;
class Row;

/// Where a table was clicked.
struct TableClick {
  FXint screenX = 0; ///< where a popup opens; 0 for a left click on a header, which opens none
  FXint screenY = 0;
  Row* row = nullptr;       ///< null for a column header, and where no row is hit
  Column* column = nullptr; ///< null for a row header, and where no column is hit
};

} // namespace Tallymoor
