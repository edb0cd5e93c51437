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

/// Shows how a table locator reads a page: the walks to the table, to its first row and to the cells of that
/// row, then the rows as the program takes them, by the classes with which it does.
class TableCheck {
public:
  enum class Content { PastPrices, StockCodes };

  /// All is borrowed. Unless all rows are wanted, the list of rows is cut.
  TableCheck(PlainOutput& out, const XMLTableLocator& locator, const HTMLTag* page, bool allRows);

  /// True when the program would take something from the table.
  bool show(Content content);

private:
  bool showWalks();
  bool showColumns(const HTMLTag& row);
  bool hasColumns(Content content);
  /// True when there is one.
  bool showFault();
  bool showPrices(const HTMLTable& table);
  /// False for a row that the program would read wrong.
  bool showPriceRow(std::size_t index, const HistoryTable::Row& row);
  bool showCodes(const HTMLTable& table);
  void showCount(std::size_t rows, std::size_t read);
  /// A row's line, unless there were enough; one with something to notice is always shown.
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
