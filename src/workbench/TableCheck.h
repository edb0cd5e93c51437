#pragma once
#include "foundation/String.h"
#include "market/HistoryTable.h"
#include <cstddef>
#include <vector>

namespace Tallymoor {

class HTMLTable;
class HTMLTag;
class PlainOutput;
class XMLTableLocator;

/// Shows how a table locator reads a page: the walks to the table, to its first row and to the cells, then
/// the rows. Uses the same classes as the program.
class TableCheck {
public:
  enum class Content { PastPrices, StockCodes };

  /// Borrows its arguments. Cuts a long list of rows unless allRows is set.
  TableCheck(PlainOutput& out, const XMLTableLocator& locator, const HTMLTag* page, bool allRows);

  /// True if the program could read at least one row.
  bool show(Content content);

private:
  bool showWalks();
  bool showColumns(const HTMLTag& row);
  bool hasColumns(Content content);
  /// True if there is a fault.
  bool showFault();
  bool showPrices(const HTMLTable& table);
  /// False if the program would read the row wrongly.
  bool showPriceRow(std::size_t index, const HistoryTable::Row& row);
  bool showCodes(const HTMLTable& table);
  void showCount(std::size_t rows, std::size_t read);
  /// Shows a row unless enough rows were shown. A notable row is always shown.
  void showRow(std::size_t row, const String& text, bool notable);
  void noteNumbers(const HTMLTable& table, std::size_t row);
  void showRemarks();
  String columnName(std::size_t column) const;

  PlainOutput& m_out;
  const XMLTableLocator& m_locator;
  const HTMLTag* m_page;
  bool m_allRows;
  std::size_t m_rowsShown = 0;
  std::size_t m_rowsHidden = 0;
  std::vector<String> m_remarks;
};

} // namespace Tallymoor
