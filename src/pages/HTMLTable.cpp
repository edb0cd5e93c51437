#include "pages/HTMLTable.h"
#include "foundation/Exception.h"
#include "pages/HTMLParser.h"
#include "pages/HTMLTableHeadings.h"
#include "pages/HTMLTagLocator.h"
#include "pages/HTMLWalkLimit.h"
#include <utility>

namespace Tallymoor {

namespace {

/// What any table that isn't nested in itself can cost: each column's walk passes each tag of the page once
/// at most, and so does the walk along the rows. Small pages may be as odd as they like.
std::size_t walkLimit(const HTMLTag& root, std::size_t numColumns) {
  constexpr std::size_t SMALL = 1000000;
  return SMALL + root.pageSize() * (numColumns + 1);
}

const HTMLTag* walk(const XMLTableLocator& locator, std::u16string_view step, const HTMLTag* from,
                    const char16_t* failure) {
  const HTMLTagLocator find(&locator.subElement(step));
  try {
    return find(from);
  } catch (const HTMLException& exception) {
    throw HTMLException(String(u"HTMLTable::fillFrom - ") + failure + exception.message());
  }
}

const XMLTagLocator& column(const XMLTableLocator& locator, std::size_t index) {
  return static_cast<const XMLTagLocator&>(locator.subElement(u"Columns", index));
}

String number(std::size_t value) {
  return String::fromLong(static_cast<std::int64_t>(value));
}

} // namespace

HTMLTable::HTMLTable(const XMLTableLocator* locator) : m_locator(locator) {}

void HTMLTable::fillFrom(const HTMLTag* root) {
  m_rows.clear();
  m_numRows = 0;
  if (root == nullptr)
    throw HTMLException(u"HTMLTable::fillFrom - bad param");
  const HTMLTag* row = firstRow(root);
  m_numColumns = m_locator->numSubElements(u"Columns");
  HTMLWalkLimit limit(walkLimit(*root, m_numColumns));
  const HTMLTableHeadings headings(*m_locator, *row, limit);
  std::map<std::size_t, std::vector<String>> rows; // a failure leaves none of them behind
  for (; row != nullptr; row = nextRow(row, &limit)) {
    rows.emplace_hint(rows.end(), rows.size(), readRow(row, limit));
    headings.checkRow(*row, limit);
  }
  m_numRows = rows.size();
  m_rows = std::move(rows);
}

const HTMLTag* HTMLTable::firstRow(const HTMLTag* root) const {
  const HTMLTag* const table = walk(*m_locator, u"TableRoot", root, u"Failed to find root tag: \n");
  return walk(*m_locator, u"Row", table, u"Failed to find first row tag: \n");
}

const HTMLTag* HTMLTable::nextRow(const HTMLTag* row, HTMLWalkLimit* limit) {
  return HTMLParser::FindSiblingTag(row, row->name(), 0, limit);
}

std::vector<String> HTMLTable::readRow(const HTMLTag* row, HTMLWalkLimit& limit) const {
  std::vector<String> cells;
  cells.reserve(m_numColumns);
  for (std::size_t i = 0; i < m_numColumns; ++i) {
    const HTMLTag* const cell = HTMLTagLocator(&column(*m_locator, i))(row, &limit);
    limit.take(cell->textView().size());
    cells.push_back(cell->text());
  }
  return cells;
}

String HTMLTable::cellValue(std::size_t row, std::size_t column) const {
  const auto found = m_rows.find(row);
  if (found == m_rows.end())
    throw HTMLException(u"HTMLTable::cellValue - no such row index" + number(row));
  if (column >= m_numColumns)
    throw HTMLException(u"HTMLTable::cellValue - no such column index" + number(column));
  return found->second[column];
}

std::optional<std::size_t> HTMLTable::findColumn(ColumnType type) const {
  const std::size_t count = m_locator->numSubElements(u"Columns");
  for (std::size_t i = 0; i < count; ++i)
    if (column(*m_locator, i).type() == type)
      return i;
  return std::nullopt;
}

std::size_t HTMLTable::columnByType(ColumnType type) const {
  const std::optional<std::size_t> found = findColumn(type);
  if (!found)
    throw HTMLException(u"HTMLTable::columnByType - no such type " + number(type));
  return *found;
}

bool HTMLTable::hasColumn(ColumnType type) const {
  return findColumn(type).has_value();
}

ColumnType HTMLTable::columnType(std::size_t index) const {
  return index < m_locator->numSubElements(u"Columns") ? column(*m_locator, index).type() : COLUMN_TYPE_NONE;
}

} // namespace Tallymoor
