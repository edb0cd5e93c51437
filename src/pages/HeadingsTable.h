#pragma once
#include "pages/AnswerFormat.h"
#include "pages/PageTables.h"
#include <string_view>

namespace Tallymoor {

/// The rows of the first table of a web page that has a row with all headings of the format, in "th" or in
/// "td". A place is the text of a heading; "*" in it stands for any text, case and white space do not count.
/// Rows are passed over and counted where a cell cannot be told to stand under its heading: rows with another
/// number of cells, with cells that go over several columns or rows, in the foot of the table; and so are
/// rows with no digit in their day.
///
/// Throws AnswerException: for an answer that is no web page; when no table has the headings; when two cells
/// of the row of headings fit one place.
AnswerTable readHeadingsTable(std::string_view bytes, const AnswerFormat& format);

/// True when a heading fits a place of a format.
bool fitsHeading(const String& heading, const String& place);

} // namespace Tallymoor
