#include "workbench/AnswerSearch.h"
#include "pages/AnswerPlaces.h"
#include "pages/AnswerReading.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include "workbench/SavedAnswer.h"
#include "workbench/SourceXml.h"
#include "workbench/WorkbenchFailure.h"
#include <algorithm>
#include <optional>

namespace Tallymoor {

namespace {

using Column = AnswerColumn;
using Places = std::vector<AnswerPlace>;

constexpr std::size_t MOST_SHOWN = 10;

struct Example {
  Column column;
  String text;
};

/// A text that names its column.
std::optional<Example> asNamed(const String& text) {
  const std::size_t sign = text.find(u'=');
  for (std::size_t i = 0; sign != String::npos && i < NUM_ANSWER_COLUMNS; ++i)
    if (columnName(static_cast<Column>(i)) == text.substr(0, sign))
      return Example{static_cast<Column>(i), text.substr(sign + 1)};
  return std::nullopt;
}

std::vector<Example> examplesOf(const std::vector<String>& texts) {
  static const std::vector<std::vector<Column>> USUAL{
      {Column::Date, Column::Close},
      {Column::Code, Column::Name, Column::Market},
      {Column::Date, Column::Open, Column::High, Column::Low, Column::Close, Column::Volume},
      {Column::Date, Column::Open, Column::High, Column::Low, Column::Close, Column::Volume,
       Column::AdjustedClose}};
  std::vector<Example> examples;
  for (const String& text : texts)
    if (const auto example = asNamed(text))
      examples.push_back(*example);
  const auto usual = std::find_if(USUAL.begin(), USUAL.end(),
                                  [&texts](const auto& columns) { return columns.size() == texts.size(); });
  if (examples.empty() && usual != USUAL.end())
    for (std::size_t i = 0; i < texts.size(); ++i)
      examples.push_back({(*usual)[i], texts[i]});
  if (examples.size() != texts.size())
    throw WorkbenchFailure(
        WorkbenchFailure::WRONG_COMMAND,
        u"the columns of the texts are unknown. Give the type of each: Date=2026-02-26 "
        u"Close=10.5. Without types the texts must be\n"
        u"  date close   or   date open high low close volume [adjusted close]   or   code "
        u"name market");
  return examples;
}

std::size_t commonStart(const String& some, const String& other) {
  return static_cast<std::size_t>(std::mismatch(some.begin(), some.end(), other.begin(), other.end()).first -
                                  some.begin());
}

/// The columns for a row that holds all texts: for each text the one nearest to the first column.
std::vector<ColumnPlace> columnsAround(const AnswerPlace& first, const Places& places,
                                       const std::vector<Example>& examples) {
  std::vector<ColumnPlace> columns{{examples.front().column, first.column}};
  for (std::size_t i = 1; i < examples.size(); ++i) {
    const AnswerPlace* best = nullptr;
    for (const AnswerPlace& place : places) {
      const bool isTaken = std::any_of(columns.begin(), columns.end(), [&place](const ColumnPlace& column) {
        return column.place == place.column;
      });
      if (place.row == first.row && place.text == examples[i].text && !isTaken &&
          (best == nullptr ||
           commonStart(place.column, first.column) > commonStart(best->column, first.column)))
        best = &place;
    }
    if (best == nullptr)
      return {};
    columns.push_back({examples[i].column, best->column});
  }
  return columns;
}

/// The number of the row that has all texts, from 1; 0 if the format reads none.
std::size_t rowWithAll(const AnswerTable& table, const std::vector<Example>& examples) {
  for (std::size_t i = 0; i < table.rows.size(); ++i)
    if (std::all_of(examples.begin(), examples.end(),
                    [&](const Example& example) { return table.rows[i][example.column] == example.text; }))
      return i + 1;
  return 0;
}

/// Shows the columns if they read the example.
bool showColumns(PlainOutput& out, const SavedAnswer& answer, const std::vector<ColumnPlace>& columns,
                 const std::vector<Example>& examples) {
  AnswerFormat format = formatForPlaces(answer.bytes());
  format.columns = columns;
  std::size_t row = 0;
  AnswerTable table;
  try {
    table = readAnswerTable(answer.bytes(), format);
    row = rowWithAll(table, examples);
  } catch (const AnswerException&) {
    return false; // values that belong to different lists
  }
  if (row == 0)
    return false;
  out.line(u"This reads " + counted(table.rows.size(), u"row", u"rows") + u"; the example is row " +
           numberText(row) + u".");
  out.line();
  for (const ColumnPlace& column : columns)
    out.line(columnElement(column), 2);
  out.line();
  if (!format.hasHeading)
    out.line(u"The request needs headings=\"no\", since the columns are found by their numbers.");
  if (format.separator != ',')
    out.line(
        u"The request needs separator=\"" +
        (format.separator == '\t' ? String(u"tab") : String(1, static_cast<char16_t>(format.separator))) +
        u"\".");
  out.line(u"Put them into the document, then test it with tallymoor-locator check DOCUMENT --page FILE.");
  return true;
}

} // namespace

bool findInAnswer(PlainOutput& out, const SavedAnswer& answer, const String& text) {
  answer.show(out);
  const String wanted = text.trimmed();
  std::size_t found = 0;
  String last;
  for (const AnswerPlace& place : placesInAnswer(answer.bytes())) {
    if (!place.text.contains(wanted))
      continue;
    const bool isNew = place.where != last;
    last = place.where;
    found += isNew ? 1 : 0;
    if (found > MOST_SHOWN)
      continue;
    if (isNew)
      out.line(numberText(found) + u". " + place.where + u": " + inQuotes(place.text));
    out.line(u"column of all rows: at=\"" + place.column + u"\"", 2);
  }
  if (found > MOST_SHOWN)
    out.line(numberText(found - MOST_SHOWN) + u" more are not shown. A longer text finds fewer.");
  if (found == 0)
    out.line(u"The answer does not contain the text " + inQuotes(wanted) + u".");
  return found > 0;
}

bool tableOfAnswer(PlainOutput& out, const SavedAnswer& answer, const std::vector<String>& texts) {
  const std::vector<Example> examples = examplesOf(texts);
  answer.show(out);
  const Places places = placesInAnswer(answer.bytes());
  for (const AnswerPlace& place : places) {
    if (place.text != examples.front().text)
      continue;
    const std::vector<ColumnPlace> columns = columnsAround(place, places, examples);
    if (!columns.empty() && showColumns(out, answer, columns, examples))
      return true;
  }
  out.line(u"No row of the answer has all these texts.");
  return false;
}

} // namespace Tallymoor
