#include "widgets/RowList.h"
#include "widgets/Column.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

Row& RowList::add(std::unique_ptr<Row> row) {
  const SortKey key = m_compare.key(row->key());
  return *m_rows.emplace(key, std::move(row))->second;
}

std::vector<Row*> RowList::all() const {
  std::vector<Row*> rows;
  rows.reserve(m_rows.size());
  for (const auto& [key, row] : m_rows)
    rows.push_back(row.get());
  return rows;
}

std::vector<Row*> RowList::withKey(const String& key) const {
  std::vector<Row*> found;
  // Different texts may compare as equal: all dates that can't be read do.
  const auto [first, last] = m_rows.equal_range(m_compare.key(key));
  for (auto row = first; row != last; ++row)
    if (row->second->key() == key)
      found.push_back(row->second.get());
  return found;
}

std::vector<Row*> RowList::sortedBy(Column& column) const {
  const RowCompare compare(column.compareType());
  std::vector<std::pair<SortKey, Row*>> keyed;
  keyed.reserve(m_rows.size());
  for (const auto& [key, row] : m_rows)
    keyed.emplace_back(compare.key(column(*row)), row.get());
  std::stable_sort(keyed.begin(), keyed.end(), [&compare](const auto& left, const auto& right) {
    return compare(left.first, right.first);
  });
  std::vector<Row*> sorted;
  sorted.reserve(keyed.size());
  for (const auto& [key, row] : keyed)
    sorted.push_back(row);
  return sorted;
}

} // namespace Tallymoor
