#include "pages/JsonTable.h"
#include "pages/AnswerForm.h"
#include "pages/JsonPath.h"
#include "pages/JsonValues.h"
#include <algorithm>

namespace Tallymoor {

namespace {

using Fault = AnswerException::Fault;

constexpr std::size_t MOST_UNITS = 400; ///< of the source's words

String joinedTexts(const std::vector<JsonValues>& found) {
  String joined;
  for (const JsonValues& at : found)
    for (const auto& [place, text] : at.values)
      if (joined.size() < MOST_UNITS)
        joined += (joined.empty() ? String() : String(u"; ")) + text.substr(0, MOST_UNITS).trimmed();
  return joined;
}

/// The common length of all lists; 1 without any.
std::size_t commonLength(const std::vector<JsonValues>& columns, const std::vector<JsonPath>& paths) {
  std::optional<std::size_t> first;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!columns[i].isList || !columns[i].isThere)
      continue;
    if (!first)
      first = i;
    else if (columns[i].length != columns[*first].length)
      throw AnswerException(Fault::Unreadable,
                            u"lists of different lengths: " +
                                String::fromLong(static_cast<std::int64_t>(columns[*first].length)) +
                                u" at " + paths[*first].text() + u", " +
                                String::fromLong(static_cast<std::int64_t>(columns[i].length)) + u" at " +
                                paths[i].text());
  }
  return first ? columns[*first].length : 1;
}

/// True for an array among arrays of another length: a value in it may stand at another place.
bool isShifted(const JsonValues& column, std::size_t place) {
  const auto length = column.innerLengths.find(place);
  return length != column.innerLengths.end() && length->second != column.innerLengths.begin()->second;
}

AnswerTable tableOf(const std::vector<JsonValues>& columns, const AnswerFormat& format, std::size_t length) {
  AnswerTable table;
  for (std::size_t place = 0; place < length; ++place) {
    AnswerRow row;
    row.place = place + 1;
    bool hasListed = false;
    bool isWhole = true;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      std::optional<String> text = columns[i].at(place);
      hasListed = hasListed || text.has_value();
      isWhole = isWhole && !isShifted(columns[i], place);
      row[format.columns[i].column] = std::move(text);
    }
    if (hasListed && isWhole)
      table.rows.push_back(std::move(row));
    else
      ++table.passedOver;
  }
  return table;
}

} // namespace

AnswerTable readJsonTable(std::string_view bytes, const AnswerFormat& format) {
  requireForm(bytes, format);
  std::vector<JsonPath> paths;
  for (const ColumnPlace& column : format.columns)
    paths.emplace_back(column.place);
  for (const String& error : format.errorPaths)
    paths.emplace_back(error);
  std::vector<JsonValues> columns = readJsonValues(bytes, paths, static_cast<char>(format.decimalSign));
  const auto firstError = columns.begin() + static_cast<std::ptrdiff_t>(format.columns.size());
  if (const String error = joinedTexts({firstError, columns.end()}); !error.empty())
    throw AnswerException(Fault::SourceError, error);
  columns.erase(firstError, columns.end());
  if (!columns.empty() && !columns.front().isThere)
    throw AnswerException(Fault::Unreadable, u"the answer has nothing at " + paths.front().text() + u": " +
                                                 inMessage(String::fromUTF8(withoutByteOrderMark(bytes))));
  return tableOf(columns, format, commonLength(columns, paths));
}

String errorInJson(std::string_view bytes, const std::vector<String>& errorPaths) {
  std::vector<JsonPath> paths(errorPaths.begin(), errorPaths.end());
  try {
    return joinedTexts(readJsonValues(bytes, paths));
  } catch (const AnswerException&) {
    return {};
  }
}

} // namespace Tallymoor
