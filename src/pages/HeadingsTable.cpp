#include "pages/HeadingsTable.h"
#include "pages/AnswerForm.h"
#include "pages/PageFigure.h"
#include <algorithm>
#include <numeric>
#include <optional>

namespace Tallymoor {

namespace {

using Fault = AnswerException::Fault;
using Places = std::vector<std::size_t>; ///< of the columns, counted in single columns of the table

/// With one blank for white space, tags and no-break spaces.
String plain(const String& text) {
  constexpr char16_t NO_BREAK = 0xA0;
  String result;
  for (const char16_t unit : text.trimmed())
    if (unit != u' ' && unit != u'\n' && unit != u'\t' && unit != NO_BREAK)
      result += unit;
    else if (!result.empty() && result.back() != u' ')
      result += u' ';
  return result.trimmed();
}

/// Where "*" in the pattern stands for any text.
bool matches(std::u16string_view text, std::u16string_view pattern) {
  std::size_t at = 0;
  std::size_t in = 0;
  std::size_t star = std::u16string_view::npos; // the last one, which takes more of the text where needed
  std::size_t taken = 0;
  while (at < text.size()) {
    if (in < pattern.size() && pattern[in] == u'*') {
      star = in++;
      taken = at;
    } else if (in < pattern.size() && pattern[in] == text[at]) {
      ++in;
      ++at;
    } else if (star != std::u16string_view::npos) {
      in = star + 1;
      at = ++taken;
    } else {
      return false;
    }
  }
  return std::all_of(pattern.begin() + static_cast<std::ptrdiff_t>(in), pattern.end(),
                     [](char16_t unit) { return unit == u'*'; });
}

/// The places of the columns; nothing where one is missing. Throws when all are there and one is there twice.
std::optional<Places> placesIn(const PageTableRow& row, const AnswerFormat& format) {
  Places places;
  String fault;
  for (const ColumnPlace& column : format.columns) {
    std::optional<std::size_t> found;
    std::size_t place = 0;
    for (std::size_t i = 0; i < row.cells.size(); place += row.spans[i++]) {
      if (!fitsHeading(row.cells[i], column.place))
        continue;
      if (found || row.spans[i] != 1)
        fault =
            (found ? u"two columns have the heading " : u"several columns have the heading ") + column.place;
      found = place;
    }
    if (!found)
      return std::nullopt;
    places.push_back(*found);
  }
  if (!fault.empty())
    throw AnswerException(Fault::Unreadable, fault);
  return places;
}

std::size_t numColumns(const PageTableRow& row) {
  return std::accumulate(row.spans.begin(), row.spans.end(), std::size_t(0));
}

/// The texts of the columns; none where a cell may stand under another heading.
AnswerRow rowOf(const PageTableRow& cells, const AnswerFormat& format, const Places& places,
                std::size_t columns) {
  AnswerRow row;
  if (cells.isFooter || cells.isShifted || cells.cells.size() != columns || numColumns(cells) != columns)
    return row;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const AnswerColumn column = format.columns[i].column;
    const bool isFigure = column >= AnswerColumn::Open && column <= AnswerColumn::Volume;
    const String& text = cells.cells[places[i]];
    if (!text.empty())
      row[column] = isFigure ? text : plain(text);
  }
  return row;
}

AnswerTable rowsBehind(const PageTable& table, std::size_t heading, const AnswerFormat& format,
                       const Places& places) {
  AnswerTable answer;
  const std::size_t columns = numColumns(table[heading]);
  for (std::size_t i = heading + 1; i < table.size(); ++i) {
    AnswerRow row = rowOf(table[i], format, places, columns);
    row.place = i + 1;
    takeRow(answer, std::move(row), format);
  }
  return answer;
}

[[noreturn]] void failWithoutHeadings(const std::vector<PageTable>& tables, const AnswerFormat& format,
                                      std::string_view bytes) {
  if (tables.empty())
    throw AnswerException(Fault::Unreadable, u"the answer is " + describedPage(bytes) + u" without a table");
  String wanted;
  for (const ColumnPlace& column : format.columns)
    wanted += (wanted.empty() ? String() : String(u", ")) + column.place;
  String seen;
  for (const PageTable& table : tables)
    if (!table.empty() && seen.empty())
      for (const String& cell : table.front().cells)
        seen += (seen.empty() ? String() : String(u", ")) + plain(cell);
  throw AnswerException(Fault::Unreadable, u"no table has the headings " + wanted +
                                               u"; the first row of the first table is " + inMessage(seen));
}

} // namespace

bool fitsHeading(const String& heading, const String& place) {
  return matches(plain(heading).toLower(), plain(place).toLower());
}

AnswerTable readHeadingsTable(std::string_view bytes, const AnswerFormat& format) {
  requireForm(bytes, format);
  const std::vector<PageTable> tables = readPageTables(String::fromUTF8(bytes));
  for (const PageTable& table : tables)
    for (std::size_t row = 0; row < table.size(); ++row)
      if (const std::optional<Places> places = placesIn(table[row], format))
        return rowsBehind(table, row, format, *places);
  failWithoutHeadings(tables, format, bytes);
}

} // namespace Tallymoor
