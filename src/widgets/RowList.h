#pragma once
#include "foundation/String.h"
#include "widgets/Row.h"
#include "widgets/RowCompare.h"
#include <cstddef>
#include <map>
#include <memory>
#include <vector>

namespace Tallymoor {

class Column;

/// The rows of a table by key, in the table's order; equal keys are allowed and keep their order of
/// insertion.
class RowList {
public:
  explicit RowList(std::int32_t compareType) : m_compare(compareType), m_rows(m_compare) {}

  Row& add(std::unique_ptr<Row> row);
  void clear() { m_rows.clear(); }
  std::size_t size() const { return m_rows.size(); }

  /// In the order of the keys.
  std::vector<Row*> all() const;
  std::vector<Row*> withKey(const String& key) const;
  /// By the column's texts; rows with equal ones stay in the order of the keys.
  std::vector<Row*> sortedBy(Column& column) const;

private:
  RowCompare m_compare;
  std::multimap<SortKey, std::unique_ptr<Row>, RowCompare> m_rows;
};

} // namespace Tallymoor
