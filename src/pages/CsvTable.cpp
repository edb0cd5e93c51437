#include "pages/CsvTable.h"
#include "pages/AnswerForm.h"
#include <algorithm>
#include <csv.h>
#include <memory>

namespace Tallymoor {

namespace {

using Fault = AnswerException::Fault;
using Fields = std::vector<String>;

constexpr std::size_t MAX_FIELDS = 1000;

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

String joined(const Fields& fields) {
  String text;
  for (const String& field : fields)
    text += (text.empty() ? String() : String(u", ")) + field;
  return text;
}

[[noreturn]] void failWithoutHeadings(const Fields& first, const AnswerFormat& format) {
  String wanted;
  for (const ColumnPlace& column : format.columns)
    wanted += (wanted.empty() ? String() : String(u", ")) + column.place;
  throw AnswerException(Fault::Unreadable, u"no row has the headings " + wanted + u"; the first row is " +
                                               inMessage(joined(first)));
}

std::vector<std::size_t> placesByHeading(const Fields& headings, const AnswerFormat& format) {
  std::vector<std::size_t> places;
  for (const ColumnPlace& column : format.columns) {
    places.push_back(placeOfHeading(headings, column.place));
    const auto behind = headings.begin() + static_cast<std::ptrdiff_t>(places.back()) + 1;
    if (placeOfHeading(Fields(behind, headings.end()), column.place) <
        static_cast<std::size_t>(headings.end() - behind))
      throw AnswerException(Fault::Unreadable, u"two columns have the heading " + column.place);
  }
  return places;
}

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

/// The texts of the columns; none for a row that has not as many fields as the heading, since a text in it
/// may stand under another heading.
AnswerRow rowOf(const Fields& fields, const AnswerFormat& format, const std::vector<std::size_t>& places,
                std::size_t numFields) {
  AnswerRow row;
  const bool isWhole =
      fields.size() >= numFields &&
      (!format.hasHeading || std::all_of(fields.begin() + static_cast<std::ptrdiff_t>(numFields),
                                         fields.end(), [](const String& field) { return field.empty(); }));
  for (std::size_t i = 0; isWhole && i < places.size(); ++i)
    if (const String& text = fields[places[i]]; !text.empty())
      row[format.columns[i].column] = text;
  return row;
}

constexpr std::size_t GROWTH = std::size_t{1} << 20; ///< bytes of the room for a field

} // namespace

std::vector<Fields> readCsvRows(std::string_view bytes, char separator) {
  csv_parser parser{};
  if (csv_init(&parser, 0) != 0)
    throw AnswerException(Fault::Unreadable, u"the CSV reader could not start");
  const std::unique_ptr<csv_parser, decltype(&csv_free)> end(&parser, &csv_free);
  csv_set_delim(&parser, static_cast<unsigned char>(separator));
  // By default a long field grows by 128 bytes at a time, each with a copy of what is there.
  csv_set_blk_size(&parser, GROWTH);
  RowCollector collector;
  if (csv_parse(&parser, bytes.data(), bytes.size(), &RowCollector::takeField, &RowCollector::endRow,
                &collector) != bytes.size())
    throw AnswerException(Fault::Unreadable, String(csv_strerror(csv_error(&parser))));
  csv_set_opts(&parser, CSV_STRICT | CSV_STRICT_FINI); // only for the end: a quote that is still open there
  if (csv_fini(&parser, &RowCollector::takeField, &RowCollector::endRow, &collector) != 0)
    throw AnswerException(Fault::Unreadable, u"the last quoted field has no end");
  if (collector.tooLong)
    throw AnswerException(Fault::Unreadable, u"a row has more than 1000 fields");
  return std::move(collector.rows);
}

AnswerTable readCsvTable(std::string_view bytes, const AnswerFormat& format) {
  requireForm(bytes, format);
  const std::vector<Fields> rows = readCsvRows(withoutByteOrderMark(bytes), format.separator);
  std::size_t next = std::min(format.skipLines, rows.size());
  const std::size_t first = next;
  std::vector<std::size_t> places;
  std::size_t numFields = 0;
  if (format.hasHeading) {
    while (next < rows.size() && !hasAllHeadings(rows[next], format))
      ++next;
    if (next == rows.size())
      failWithoutHeadings(first < rows.size() ? rows[first] : Fields(), format);
    places = placesByHeading(rows[next], format);
    numFields = rows[next++].size();
  } else {
    places = placesByNumber(format);
    numFields = places.empty() ? 0 : *std::max_element(places.begin(), places.end()) + 1;
  }
  AnswerTable table;
  for (; next < rows.size(); ++next) {
    AnswerRow row = rowOf(rows[next], format, places, numFields);
    row.place = next + 1;
    takeRow(table, std::move(row), format);
  }
  if (!format.hasHeading && table.rows.empty() && first < rows.size())
    throw AnswerException(Fault::Unreadable, u"no row has the columns of the format; the first row is " +
                                                 inMessage(joined(rows[first])));
  return table;
}

} // namespace Tallymoor
