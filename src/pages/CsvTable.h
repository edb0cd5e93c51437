#pragma once
#include "pages/AnswerFormat.h"
#include <string_view>

namespace Tallymoor {

/// The rows of a CSV answer in UTF-8, by RFC 4180: quoted fields may hold separators and line breaks. A byte
/// order mark is passed over. With headings, the first row that has all of them begins the table; case and
/// blanks around them do not count. A row with another number of fields than the headings (but for empty ones
/// at its end), with fewer than the numbers of columns need, or with no digit in its day is passed over and
/// counted: sections, sums and notes between the rows.
///
/// Throws AnswerException: with the source's words for a JSON object that holds one of the error paths; for
/// an answer of another form, a row of more than 1000 fields and a quoted field without an end; for headings
/// that no row has, or that two columns have; without headings, for a text without any row.
AnswerTable readCsvTable(std::string_view bytes, const AnswerFormat& format);

/// All rows of a CSV text as fields without blanks at their ends; empty lines are left out. Throws
/// AnswerException for a row of more than 1000 fields, and a quoted field without an end.
std::vector<std::vector<String>> readCsvRows(std::string_view bytes, char separator);

} // namespace Tallymoor
