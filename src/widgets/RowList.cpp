#include "widgets/RowList.h"
#include "widgets/Column.h"
#include <algorithm>
#include <iterator>
#include <utility>

namespace Tallymoor {

Row& RowList::add(std::unique_ptr<Row> row) {
  row->m_place = m_nextPlace++;
  m_sorted = false;
  SortKey key = m_compare.key(row->key());
  m_rows.push_back({std::move(key), std::move(row)});
  return *m_rows.back().row;
}

void RowList::clear() {
  m_rows.clear();
  m_leaving.clear();
}

void RowList::release() {
  for (Entry& entry : m_rows)
    entry.row->m_place = LEAVING;
}

void RowList::keep(Row& row) {
  row.m_place = m_nextPlace++;
  m_sorted = false;
}

std::vector<Row*> RowList::leaving() {
  const auto first = std::stable_partition(m_rows.begin(), m_rows.end(),
                                           [](const Entry& entry) { return entry.row->m_place != LEAVING; });
  std::move(first, m_rows.end(), std::back_inserter(m_leaving));
  m_rows.erase(first, m_rows.end());
  std::vector<Row*> rows;
  for (const Entry& entry : m_leaving)
    rows.push_back(entry.row.get());
  return rows;
}

/// Rows mostly come in order, or nearly.
const std::vector<RowList::Entry>& RowList::sorted() const {
  const auto isBefore = [this](const Entry& left, const Entry& right) {
    if (m_compare(left.key, right.key))
      return true;
    return !m_compare(right.key, left.key) && left.row->m_place < right.row->m_place;
  };
  if (!std::exchange(m_sorted, true) && !std::is_sorted(m_rows.begin(), m_rows.end(), isBefore))
    std::stable_sort(m_rows.begin(), m_rows.end(), isBefore);
  return m_rows;
}

std::vector<Row*> RowList::all() const {
  std::vector<Row*> rows;
  rows.reserve(m_rows.size());
  for (const Entry& entry : sorted())
    rows.push_back(entry.row.get());
  return rows;
}

std::vector<Row*> RowList::withKey(const String& key) const {
  struct Less {
    const RowCompare& compare;
    bool operator()(const Entry& left, const SortKey& right) const { return compare(left.key, right); }
    bool operator()(const SortKey& left, const Entry& right) const { return compare(left, right.key); }
  };
  const std::vector<Entry>& rows = sorted();
  std::vector<Row*> found;
  // Different texts may compare as equal: all dates that can't be read do.
  const auto [first, last] = std::equal_range(rows.begin(), rows.end(), m_compare.key(key), Less{m_compare});
  for (auto entry = first; entry != last; ++entry)
    if (entry->row->key() == key)
      found.push_back(entry->row.get());
  return found;
}

std::vector<Row*> RowList::sortedBy(Column& column) const {
  const RowCompare compare(column.compareType());
  std::vector<std::pair<SortKey, Row*>> keyed;
  keyed.reserve(m_rows.size());
  for (const Entry& entry : sorted())
    keyed.emplace_back(compare.key(column(*entry.row)), entry.row.get());
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
