#pragma once
#include "foundation/String.h"
#include "widgets/Row.h"
#include "widgets/RowCompare.h"
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Tallymoor {

class Column;

/// The rows of a table by key, in the table's order; equal keys are allowed and keep their order of
/// insertion.
///
/// Rows can be reordered without being rebuilt: after release, those that are kept get new places in the
/// order of keeping, and the others wait to be dropped.
class RowList {
public:
  explicit RowList(std::int32_t compareType) : m_compare(compareType) {}

  Row& add(std::unique_ptr<Row> row);
  void clear();
  std::size_t size() const { return m_rows.size(); }

  /// All rows leave, until they are kept or dropped.
  void release();
  /// The row stays after all, as if it was added now.
  void keep(Row& row);
  /// Those that were released and not kept. They are no more part of the list.
  std::vector<Row*> leaving();
  /// Destroys them.
  void dropLeaving() { m_leaving.clear(); }

  /// In the order of the keys.
  std::vector<Row*> all() const;
  std::vector<Row*> withKey(const String& key) const;
  /// By the column's texts; rows with equal ones stay in the order of the keys.
  std::vector<Row*> sortedBy(Column& column) const;

private:
  struct Entry {
    SortKey key;
    std::unique_ptr<Row> row;
  };
  static constexpr std::size_t LEAVING = std::size_t(-1);

  const std::vector<Entry>& sorted() const;

  RowCompare m_compare;
  mutable std::vector<Entry> m_rows; ///< in order while m_sorted
  mutable bool m_sorted = true;
  std::vector<Entry> m_leaving;
  std::size_t m_nextPlace = 0;
};

} // namespace Tallymoor
