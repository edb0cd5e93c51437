#pragma once
#include "foundation/String.h"
#include "xml/LocatorDocuments.h"
#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace Tallymoor {

class HTMLTag;
class HTMLWalkLimit;

/// A repeating table of a page, read into rows of raw cell texts by the three walks of a table locator: from
/// the page to the table, from there to the first row, and from each row to its cells. Converting the texts
/// is the reader's business.
class HTMLTable {
public:
  /// The locator is not owned and must outlive the table.
  explicit HTMLTable(const XMLTableLocator* locator);

  /// Throws HTMLException when a walk fails; a single row without one of the cells fails the whole table. So
  /// does a page whose rows lie inside rows to such a depth that reading it would take for ever, and one
  /// whose cells do not stand under the headings that the locator names (see HTMLTableHeadings).
  void fillFrom(const HTMLTag* root);
  /// The first row of a fill. Same failures.
  const HTMLTag* firstRow(const HTMLTag* root) const;
  /// The row behind a row, or null.
  static const HTMLTag* nextRow(const HTMLTag* row, HTMLWalkLimit* limit = nullptr);

  /// Throws HTMLException "HTMLTable::cellValue - no such row index" or "... column index" and the number.
  String cellValue(std::size_t row, std::size_t column) const;
  /// Index of the first column of the type; throws HTMLException "HTMLTable::columnByType - no such type ".
  std::size_t columnByType(ColumnType type) const;
  bool hasColumn(ColumnType type) const;

  /// Both are 0 before a fill.
  std::size_t numColumns() const { return m_numColumns; }
  std::size_t numRows() const { return m_numRows; }
  /// 0 for an index beyond the columns.
  ColumnType columnType(std::size_t column) const;

private:
  std::optional<std::size_t> findColumn(ColumnType type) const;
  std::vector<String> readRow(const HTMLTag* row, HTMLWalkLimit& limit) const;

  const XMLTableLocator* m_locator;
  std::map<std::size_t, std::vector<String>> m_rows;
  std::size_t m_numColumns = 0;
  std::size_t m_numRows = 0;
};

} // namespace Tallymoor
