#include "workbench/TableCheck.h"
#include "foundation/Exception.h"
#include "market/SearchTable.h"
#include "pages/HTMLTable.h"
#include "pages/HTMLTag.h"
#include "pages/HTMLTagLocator.h"
#include "workbench/ColumnTypes.h"
#include "workbench/NumberRemark.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include "workbench/TableFault.h"
#include "workbench/WalkTrace.h"
#include "xml/LocatorDocuments.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr std::size_t ROWS_SHOWN = 12;
constexpr std::size_t NOTABLE_ROWS_SHOWN = 40;
constexpr std::size_t REMARKS_SHOWN = 5;

String price(double value) {
  return padded(String::fromDouble(value, 4), 12);
}

String reason(HistoryTable::Reading reading, const Date& day) {
  switch (reading) {
  case HistoryTable::Reading::NoDate:
    return u"its date is empty";
  case HistoryTable::Reading::NoClose:
    return u"its close is empty, as in the row of a dividend";
  case HistoryTable::Reading::UnbelievableDay:
    return u"its day " + day.toString(DATE_DISPLAY_YMD) + u" is before 1900";
  case HistoryTable::Reading::ToCome:
    return u"its day " + day.toString(DATE_DISPLAY_YMD) + u" is to come: the program asks about it";
  case HistoryTable::Reading::Read:
    break;
  }
  return String();
}

bool isRead(ColumnType type) {
  return type != COLUMN_TYPE_NONE && type != COLUMN_TYPE_OPEN && type != COLUMN_TYPE_ADJ_CLOSE;
}

bool isNumber(ColumnType type) {
  return type == COLUMN_TYPE_HIGH || type == COLUMN_TYPE_LOW || type == COLUMN_TYPE_CLOSE ||
         type == COLUMN_TYPE_VOLUME;
}

} // namespace

TableCheck::TableCheck(PlainOutput& out, const XMLTableLocator& locator, const HTMLTag* page, bool allRows)
    : m_out(out), m_locator(locator), m_page(page), m_allRows(allRows) {}

bool TableCheck::show(Content content) {
  if (!showWalks() || !hasColumns(content))
    return false;
  HTMLTable table(&m_locator);
  try {
    table.fillFrom(m_page);
  } catch (const HTMLException& failure) {
    m_out.line();
    m_out.line(u"The table can't be read: " + failure.message());
    showFault();
    return false;
  }
  m_out.line();
  const bool taken = content == Content::PastPrices ? showPrices(table) : showCodes(table);
  showRemarks();
  return !showFault() && taken;
}

bool TableCheck::showWalks() {
  m_out.line();
  m_out.line(u"To the table");
  const HTMLTag* const table = WalkTrace(m_locator.subElement(u"TableRoot"), *m_page).show(m_out, 1);
  if (table == nullptr)
    return false;
  m_out.line();
  m_out.line(u"From the table to its first row");
  const HTMLTag* const row = WalkTrace(m_locator.subElement(u"Row"), *table).show(m_out, 1);
  return row != nullptr && showColumns(*row);
}

bool TableCheck::showColumns(const HTMLTag& row) {
  m_out.line();
  m_out.line(u"The columns, in the first row " + tagSummary(row));
  for (std::size_t i = 0; i < m_locator.numSubElements(u"Columns"); ++i) {
    const XMLElement& column = m_locator.subElement(u"Columns", i);
    const WalkTrace trace(column, row);
    const auto type = static_cast<const XMLTagLocator&>(column).type();
    const String head = padded(columnName(i), 11) + trace.steps();
    try {
      const HTMLTag* const cell = HTMLTagLocator(&column)(&row);
      m_out.line(head + u": " + (cell->textView().empty() ? String(u"empty") : inQuotes(cell->textView())) +
                     (isRead(type) ? u"" : u" (not used)"),
                 1);
    } catch (const HTMLException&) {
      m_out.line(head, 1);
      trace.show(m_out, 2);
      return false;
    }
  }
  return true;
}

bool TableCheck::hasColumns(Content content) {
  static const std::vector<ColumnType> PRICES{COLUMN_TYPE_DATE, COLUMN_TYPE_CLOSE, COLUMN_TYPE_HIGH,
                                              COLUMN_TYPE_LOW, COLUMN_TYPE_VOLUME};
  static const std::vector<ColumnType> CODES{COLUMN_TYPE_CODE, COLUMN_TYPE_STOCK_NAME,
                                             COLUMN_TYPE_MARKET_NAME};
  const HTMLTable table(&m_locator);
  String missing;
  for (const ColumnType type : content == Content::PastPrices ? PRICES : CODES)
    if (!table.hasColumn(type))
      missing += (missing.empty() ? u"" : u", ") + columnTypeName(type);
  if (missing.empty())
    return true;
  m_out.line();
  m_out.line(u"STOPPED: the program also needs columns of these types: " + missing);
  return false;
}

bool TableCheck::showFault() {
  const std::optional<TableFault> fault = TableFault::find(m_locator, m_page);
  if (!fault)
    return false;
  const String row = u"Row " + numberText(fault->rowNumber + 1) + u", " + tagSummary(*fault->row) + u", ";
  const bool isMissing = fault->kind == TableFault::Kind::MissingCell;
  m_out.line(isMissing ? row + u"has no cell for " + columnName(fault->column) +
                             u". One row that lacks a cell makes the whole table unreadable."
                       : u"WRONG: " + row + u"is too short: the cell read as its " +
                             columnName(fault->column) + u" belongs to the next row.");
  WalkTrace(m_locator.subElement(u"Columns", fault->column), *fault->row).show(m_out, 1);
  m_out.line(TableFault::ADVICE);
  return true;
}

String TableCheck::columnName(std::size_t column) const {
  const XMLElement& locator = m_locator.subElement(u"Columns", column);
  return locator.hasAttribute(u"type") ? shortened(locator.attribute(u"type")) : String(u"(no type)");
}

bool TableCheck::showPrices(const HTMLTable& table) {
  const HistoryTable prices(table);
  m_out.line(u"The rows as the program reads them");
  m_out.line(u"row   day         close       high        low         volume", 1);
  std::size_t read = 0;
  bool sound = true;
  for (std::size_t i = 0; i < table.numRows(); ++i) {
    noteNumbers(table, i);
    try {
      const HistoryTable::Row row = prices.row(i);
      read += row.reading == HistoryTable::Reading::Read;
      sound = showPriceRow(i, row) && sound;
    } catch (const Exception& failure) {
      showRow(i,
              u"STOPPED: " + failure.message() +
                  u"\nA date must look like 3-Mar-06, and a price like 1,234.50. One that does not makes the "
                  u"whole table "
                  u"unreadable.",
              true);
      return false;
    }
  }
  showCount(table.numRows(), read);
  return sound && read != 0;
}

bool TableCheck::showPriceRow(std::size_t index, const HistoryTable::Row& row) {
  if (row.reading != HistoryTable::Reading::Read) {
    showRow(index, u"skipped: " + reason(row.reading, row.day), true);
    return true;
  }
  const ShareValue& value = row.value;
  const bool worthless = value.close <= 0.0;
  showRow(index,
          padded(row.day.toString(DATE_DISPLAY_YMD), 12) + price(value.close) + price(value.high) +
              price(value.low) + String::fromLong(value.volume) +
              String(worthless ? u"   <- WRONG: a close of zero" : u""),
          worthless);
  return !worthless;
}

bool TableCheck::showCodes(const HTMLTable& table) {
  const SearchTable codes(table);
  m_out.line(u"The rows as the program reads them");
  m_out.line(u"row   code, name, market", 1);
  std::size_t read = 0;
  for (std::size_t i = 0; i < table.numRows(); ++i) {
    const SearchTable::Row row = codes.row(i);
    const CodeSearchResult& found = row.result;
    if (row.reading == SearchTable::Reading::Read) {
      ++read;
      showRow(i, inQuotes(found.code) + u", " + inQuotes(found.name) + u", " + inQuotes(found.market), false);
    } else if (row.reading == SearchTable::Reading::NoCode) {
      showRow(i, u"skipped: its code is empty", true);
    } else {
      showRow(i, u"skipped: " + inQuotes(found.code) + u" begins with E: and is not traded", true);
    }
  }
  showCount(table.numRows(), read);
  return read != 0;
}

void TableCheck::showCount(std::size_t rows, std::size_t read) {
  if (m_rowsHidden != 0)
    m_out.line(u"... and " + counted(m_rowsHidden, u"row", u"rows") + u" more; --all shows them", 1);
  m_out.line(counted(rows, u"row", u"rows") + u": " + numberText(read) + u" read, " +
             numberText(rows - read) + u" skipped.");
}

void TableCheck::showRow(std::size_t row, const String& text, bool notable) {
  if (!m_allRows && m_rowsShown >= (notable ? NOTABLE_ROWS_SHOWN : ROWS_SHOWN)) {
    ++m_rowsHidden;
    return;
  }
  ++m_rowsShown;
  m_out.line(padded(numberText(row + 1), 6) + text, 1);
}

void TableCheck::noteNumbers(const HTMLTable& table, std::size_t row) {
  for (std::size_t column = 0; column < table.numColumns(); ++column) {
    const String cell = table.cellValue(row, column);
    if (!isNumber(table.columnType(column)) || cell.empty())
      continue;
    const bool isVolume = table.columnType(column) == COLUMN_TYPE_VOLUME;
    const String remark = isVolume ? remarkOnVolume(cell) : remarkOnNumber(cell);
    if (!remark.empty())
      m_remarks.push_back(u"row " + numberText(row + 1) + u", " + columnName(column) + u": " + remark + u".");
  }
}

void TableCheck::showRemarks() {
  if (m_remarks.empty())
    return;
  m_out.line();
  m_out.line(u"Note:");
  for (std::size_t i = 0; i < std::min(m_remarks.size(), REMARKS_SHOWN); ++i)
    m_out.line(m_remarks[i], 1);
  if (m_remarks.size() > REMARKS_SHOWN)
    m_out.line(u"... and " + numberText(m_remarks.size() - REMARKS_SHOWN) + u" more like these", 1);
}

} // namespace Tallymoor
