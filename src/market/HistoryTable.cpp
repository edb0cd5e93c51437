#include "market/HistoryTable.h"
#include "foundation/Exception.h"
#include "pages/HTMLTable.h"
#include "pages/PageFigure.h"
#include <cmath>

namespace Tallymoor {

namespace {

const Date FIRST_BELIEVABLE_DAY(1900, 1, 1);

/// The day of a text as "3-Mar-06" or "3-Mar-2006". Days that a month doesn't have would be carried over, and
/// a year of one digit, as in a text that was cut, would be taken for one of this century.
Date dayOf(const String& text) {
  Date day(text, DATE_DISPLAY_MIDDATE1);
  const String known = text.starts_with(u"0") ? text.substr(1).toLower() : text.toLower();
  const String shortForm = day.toString(DATE_DISPLAY_MIDDATE1).toLower();
  const String longForm = shortForm.substr(0, shortForm.size() - 2) + String::fromLong(day.year());
  if (known != shortForm && known != longForm)
    throw HTMLException(u"TallymoorInternet - no day: " + text);
  return day;
}

/// A high or low; 0 where the page has none.
double figureOrNone(const String& text) {
  return holdsDigits(text) ? requireFigure(text) : 0.0;
}

/// 0 where it can't be read.
std::int32_t volumeIn(const String& text) {
  return String::fromDouble(std::trunc(readVolume(text).value_or(0.0)), 0).toLong();
}

} // namespace

HistoryTable::HistoryTable(const HTMLTable& table)
    : m_table(table), m_date(table.columnByType(COLUMN_TYPE_DATE)),
      m_high(table.columnByType(COLUMN_TYPE_HIGH)), m_low(table.columnByType(COLUMN_TYPE_LOW)),
      m_volume(table.columnByType(COLUMN_TYPE_VOLUME)), m_close(table.columnByType(COLUMN_TYPE_CLOSE)) {}

HistoryTable::Row HistoryTable::row(std::size_t index) const {
  const String dateText = withoutPageBlanks(m_table.cellValue(index, m_date));
  const String closeText = m_table.cellValue(index, m_close);
  Row row{Reading::Read, Date(0u), {}};
  if (dateText.empty() || !holdsDigits(closeText)) {
    row.reading = dateText.empty() ? Reading::NoDate : Reading::NoClose;
    return row;
  }
  row.day = dayOf(dateText);
  if (row.day < FIRST_BELIEVABLE_DAY) {
    row.reading = Reading::UnbelievableDay;
    return row;
  }
  if (row.day > lastBelievableDay())
    row.reading = Reading::ToCome;
  row.value.high = figureOrNone(m_table.cellValue(index, m_high));
  row.value.low = figureOrNone(m_table.cellValue(index, m_low));
  row.value.close = requireFigure(closeText);
  row.value.volume = volumeIn(m_table.cellValue(index, m_volume));
  return row;
}

AnsweredHistory HistoryTable::history() const {
  AnsweredHistory history;
  for (std::size_t i = 0; i < m_table.numRows(); ++i) {
    const Row read = row(i);
    if (read.reading == Reading::Read)
      history.prices.insert_or_assign(read.day, read.value);
    else if (read.reading == Reading::ToCome)
      history.future.insert_or_assign(read.day, read.value);
  }
  return history;
}

} // namespace Tallymoor
