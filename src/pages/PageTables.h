#pragma once
#include "foundation/String.h"
#include <string_view>
#include <vector>

namespace Tallymoor {

/// A row of a table, as the page's text has it.
struct PageTableRow {
  /// Texts with characters for references such as "&amp;", and a blank for each run of white space. Where a
  /// tag stands inside the text there is a line feed: "12<sup>5</sup>" is not 125. What is hidden is left
  /// out, but for what a stylesheet hides.
  std::vector<String> cells;
  /// Columns over which each cell goes, from 1.
  std::vector<unsigned> spans;
  bool isFooter = false; ///< stands in a "tfoot"
  /// A cell of this row, or of one before it, goes over several rows: cells do not stand in their columns.
  bool isShifted = false;
};
using PageTable = std::vector<PageTableRow>;

/// All tables of a web page in the order of their beginnings, whatever its tags lack: cells and rows end
/// where the next one begins. A table inside a cell stands by itself, and its texts do not count for the
/// cell. Time and memory are linear in the length of the page.
std::vector<PageTable> readPageTables(std::u16string_view page);

} // namespace Tallymoor
