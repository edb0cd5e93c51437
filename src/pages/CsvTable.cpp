#include "pages/CsvTable.h"
#include "pages/JsonTable.h"
#include "pages/PageFigure.h"
#include <algorithm>
#include <csv.h>
#include <memory>

namespace Tallymoor {

namespace {

using Fault = AnswerException::Fault;
using Fields = std::vector<String>;

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr std::size_t MAX_FIELDS = 1000;
constexpr std::size_t SHOWN_UNITS = 60;

/// Takes the fields from the library, whose callbacks may not throw what it does not know.
struct RowCollector {
  std::vector<Fields> rows;
  Fields row;
  bool tooLong = false;

  static void takeField(void* text, std::size_t length, void* self) {
    auto& collector = *static_cast<RowCollector*>(self);
    if (collector.row.size() == MAX_FIELDS)
      collector.tooLong = true;
    else
      collector.row.push_back(String::fromUTF8({static_cast<const char*>(text), length}).trimmed());
  }
  static void endRow(int, void* self) {
    auto& collector = *static_cast<RowCollector*>(self);
    collector.rows.push_back(std::move(collector.row));
    collector.row.clear();
  }
};

/// What no table begins with: a message that says what came instead.
void refuseOtherForms(std::string_view bytes, const AnswerFormat& format) {
  const std::string_view text = bytes.substr(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
  if (text.empty())
    throw AnswerException(Fault::Unreadable, u"the answer is empty");
  if (text.front() == '<')
    throw AnswerException(Fault::Unreadable, u"the answer is a web page where CSV is expected");
  if (text.front() != '{')
    return;
  if (const String error = errorInJson(text, format.errorPaths); !error.empty())
    throw AnswerException(Fault::SourceError, error);
  throw AnswerException(Fault::Unreadable, u"the answer is JSON where CSV is expected");
}

/// The index of a heading in a row; the row's size if it is missing.
std::size_t placeOfHeading(const Fields& row, const String& heading) {
  const String wanted = heading.trimmed().toLower();
  const auto found =
      std::find_if(row.begin(), row.end(), [&](const String& field) { return field.toLower() == wanted; });
  return static_cast<std::size_t>(found - row.begin());
}

bool hasAllHeadings(const Fields& row, const AnswerFormat& format) {
  return std::all_of(format.columns.begin(), format.columns.end(), [&](const ColumnPlace& column) {
    return placeOfHeading(row, column.place) < row.size();
  });
}

[[noreturn]] void failWithoutHeadings(const Fields& first, const AnswerFormat& format) {
  String wanted;
  for (const ColumnPlace& column : format.columns)
    wanted += (wanted.empty() ? String() : String(u", ")) + column.place;
  String seen;
  for (const String& field : first)
    seen += (seen.empty() ? String() : String(u", ")) + field;
  if (seen.size() > SHOWN_UNITS)
    seen = seen.substr(0, SHOWN_UNITS) + u"...";
  throw AnswerException(Fault::Unreadable,
                        u"no row has the headings " + wanted + u"; the first row is " + seen);
}

/// Where each column of the format stands in a row.
std::vector<std::size_t> placesByNumber(const AnswerFormat& format) {
  std::vector<std::size_t> places;
  for (const ColumnPlace& column : format.columns) {
    const std::int32_t number = column.place.toLong();
    if (number < 1)
      throw AnswerException(Fault::Unreadable, u"a CSV column is no number from 1: " + column.place);
    places.push_back(static_cast<std::size_t>(number) - 1);
  }
  return places;
}

bool isRow(const AnswerRow& row, const AnswerFormat& format) {
  for (const ColumnPlace& column : format.columns)
    if (column.column == AnswerColumn::Date)
      return row[column.column] && holdsDigits(*row[column.column]);
  return std::any_of(row.texts.begin(), row.texts.end(), [](const auto& text) { return text.has_value(); });
}

} // namespace

std::vector<Fields> readCsvRows(std::string_view bytes, char separator) {
  csv_parser parser;
  if (csv_init(&parser, 0) != 0)
    throw AnswerException(Fault::Unreadable, u"the CSV reader could not start");
  const std::unique_ptr<csv_parser, decltype(&csv_free)> end(&parser, &csv_free);
  csv_set_delim(&parser, static_cast<unsigned char>(separator));
  RowCollector collector;
  if (csv_parse(&parser, bytes.data(), bytes.size(), &RowCollector::takeField, &RowCollector::endRow,
                &collector) != bytes.size())
    throw AnswerException(Fault::Unreadable, String(csv_strerror(csv_error(&parser))));
  csv_fini(&parser, &RowCollector::takeField, &RowCollector::endRow, &collector);
  if (collector.tooLong)
    throw AnswerException(Fault::Unreadable, u"a row has more than 1000 fields");
  return std::move(collector.rows);
}

AnswerTable readCsvTable(std::string_view bytes, const AnswerFormat& format) {
  if (bytes.starts_with(BYTE_ORDER_MARK))
    bytes.remove_prefix(BYTE_ORDER_MARK.size());
  refuseOtherForms(bytes, format);
  const std::vector<Fields> rows = readCsvRows(bytes, format.separator);
  std::size_t next = std::min(format.skipLines, rows.size());
  std::vector<std::size_t> places;
  if (format.hasHeading) {
    const std::size_t from = next;
    while (next < rows.size() && !hasAllHeadings(rows[next], format))
      ++next;
    if (next == rows.size())
      failWithoutHeadings(from < rows.size() ? rows[from] : Fields(), format);
    for (const ColumnPlace& column : format.columns)
      places.push_back(placeOfHeading(rows[next], column.place));
    ++next;
  } else {
    places = placesByNumber(format);
  }
  const std::size_t numFields = places.empty() ? 0 : *std::max_element(places.begin(), places.end()) + 1;
  AnswerTable table;
  for (; next < rows.size(); ++next) {
    AnswerRow row;
    row.place = next + 1;
    for (std::size_t i = 0; rows[next].size() >= numFields && i < places.size(); ++i)
      if (const String& text = rows[next][places[i]]; !text.empty())
        row[format.columns[i].column] = text;
    if (isRow(row, format))
      table.rows.push_back(std::move(row));
    else
      ++table.passedOver;
  }
  return table;
}

} // namespace Tallymoor
