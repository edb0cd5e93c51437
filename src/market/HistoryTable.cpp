#include "market/HistoryTable.h"
#include "market/HTMLTable.h"

namespace Tallymoor {

namespace {

const Date FIRST_BELIEVABLE_DAY(1900, 1, 1);

/// The clock of the exchange may be a day ahead of ours.
bool isBelievable(const Date& day) {
  return day >= FIRST_BELIEVABLE_DAY && day <= Date::realToday().plusDays(1);
}

} // namespace

HistoryTable::HistoryTable(const HTMLTable& table)
    : m_table(table), m_date(table.columnByType(COLUMN_TYPE_DATE)),
      m_high(table.columnByType(COLUMN_TYPE_HIGH)), m_low(table.columnByType(COLUMN_TYPE_LOW)),
      m_volume(table.columnByType(COLUMN_TYPE_VOLUME)), m_close(table.columnByType(COLUMN_TYPE_CLOSE)) {}

HistoryTable::Row HistoryTable::row(std::size_t index) const {
  const String dateText = m_table.cellValue(index, m_date);
  const String closeText = m_table.cellValue(index, m_close);
  Row row{Reading::Read, Date(0u), {}};
  if (dateText.empty() || closeText.empty()) {
    row.reading = dateText.empty() ? Reading::NoDate : Reading::NoClose;
    return row;
  }
  row.day = Date(dateText, DATE_DISPLAY_MIDDATE1);
  if (!isBelievable(row.day)) {
    row.reading = Reading::UnbelievableDay;
    return row;
  }
  row.value.high = m_table.cellValue(index, m_high).toDouble();
  row.value.low = m_table.cellValue(index, m_low).toDouble();
  row.value.close = closeText.toDouble();
  row.value.volume = m_table.cellValue(index, m_volume).toLong();
  return row;
}

std::map<Date, ShareValue> HistoryTable::rows() const {
  std::map<Date, ShareValue> rows;
  for (std::size_t i = 0; i < m_table.numRows(); ++i) {
    const Row read = row(i);
    if (read.reading == Reading::Read)
      rows.insert_or_assign(read.day, read.value);
  }
  return rows;
}

} // namespace Tallymoor
