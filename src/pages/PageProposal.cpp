#include "pages/AnswerForm.h"
#include "pages/FormatProposal.h"
#include "pages/KnownHeadings.h"
#include "pages/PageTables.h"
#include "pages/TextReadings.h"
#include <algorithm>

namespace Tallymoor {

namespace {

/// With blanks for the tags in it.
String asPlace(String heading) {
  std::replace(heading.begin(), heading.end(), u'\n', u' ');
  return heading;
}

} // namespace

FormatProposal proposePageFormat(std::string_view bytes) {
  FormatProposal proposal;
  proposal.format.reader = AnswerReader::Headings;
  requireForm(bytes, proposal.format);
  const std::vector<PageTable> tables = readPageTables(String::fromUTF8(bytes));
  std::vector<ColumnPlace>& best = proposal.format.columns;
  for (const PageTable& table : tables)
    for (const PageTableRow& row : table)
      if (std::vector<ColumnPlace> columns = knownColumns(row.cells); holds(columns, AnswerColumn::Date) &&
                                                                      holds(columns, AnswerColumn::Close) &&
                                                                      columns.size() > best.size())
        best = std::move(columns);
  if (best.empty())
    throw AnswerException(AnswerException::Fault::Unreadable,
                          tables.empty()
                              ? String(u"the page has no table")
                              : String(u"no table of the page has headings for the day and the close"));
  for (ColumnPlace& column : best)
    column.place = asPlace(column.place);
  settleTexts(bytes, proposal);
  return proposal;
}

} // namespace Tallymoor
