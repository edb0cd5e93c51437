#include "pages/AnswerForm.h"
#include "pages/CsvTable.h"
#include "pages/FormatProposal.h"
#include "pages/KnownHeadings.h"
#include "pages/TextReadings.h"
#include <algorithm>
#include <array>
#include <map>

namespace Tallymoor {

namespace {

using Column = AnswerColumn;
using Fault = AnswerException::Fault;
using Fields = std::vector<String>;

constexpr std::size_t HEADING_ROWS = 50; ///< descriptions of central banks take some 30 rows
constexpr std::array SEPARATORS{',', ';', '\t', '|'};

/// Finds the separator and the row of headings; false when no row has both for day and close.
bool settleHeadings(std::string_view bytes, AnswerFormat& format, bool& hasDay) {
  for (const char separator : SEPARATORS) {
    const std::vector<Fields> rows = readCsvRows(bytes, separator);
    for (std::size_t i = 0; i < std::min(rows.size(), HEADING_ROWS); ++i) {
      const std::vector<ColumnPlace> columns = knownColumns(rows[i]);
      hasDay = hasDay || holds(columns, Column::Date);
      if (!holds(columns, Column::Date) || !holds(columns, Column::Close) ||
          columns.size() <= format.columns.size())
        continue;
      format.columns = columns;
      format.separator = separator;
    }
  }
  return !format.columns.empty();
}

/// The texts of the rows that have the most frequent number of fields, by column.
std::vector<NamelessColumn> columnsOf(const std::vector<Fields>& rows) {
  std::map<std::size_t, std::size_t> counts;
  for (const Fields& row : rows)
    ++counts[row.size()];
  const auto most = std::max_element(counts.begin(), counts.end(), [](const auto& some, const auto& other) {
    return some.second < other.second;
  });
  std::vector<NamelessColumn> columns(most == counts.end() ? 0 : most->first);
  for (std::size_t i = 0; i < columns.size(); ++i)
    columns[i].place = String::fromLong(static_cast<std::int64_t>(i) + 1);
  for (const Fields& row : rows)
    for (std::size_t i = 0; row.size() == columns.size() && i < row.size(); ++i)
      columns[i].texts.push_back(row[i]);
  return columns;
}

/// For a text whose rows have no headings above them.
bool settleNumbers(std::string_view bytes, FormatProposal& proposal) {
  for (const char separator : SEPARATORS) {
    const std::vector<NamelessColumn> columns = columnsOf(readCsvRows(bytes, separator));
    if (columns.size() < 2 || !settleColumns(columns, proposal))
      continue;
    proposal.format.separator = separator;
    proposal.format.hasHeading = false;
    return true;
  }
  return false;
}

} // namespace

FormatProposal proposeCsvFormat(std::string_view bytes) {
  FormatProposal proposal;
  requireForm(bytes, proposal.format);
  bool hasDay = false;
  if (!settleHeadings(withoutByteOrderMark(bytes), proposal.format, hasDay) &&
      !settleNumbers(withoutByteOrderMark(bytes), proposal))
    throw AnswerException(Fault::Unreadable, hasDay ? u"no row of headings has one for the close"
                                                    : u"no row of headings has one for the day");
  settleTexts(bytes, proposal);
  return proposal;
}

} // namespace Tallymoor
