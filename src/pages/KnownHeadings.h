#pragma once
#include "pages/AnswerFormat.h"
#include <vector>

namespace Tallymoor {

/// Finds columns by headings that exports, pages and services use, in several languages: of the texts, those
/// that name a column, with the text as the place. Of several for one column the best known counts. Case,
/// punctuation, a number in front ("4. close") and a remark in brackets behind do not count.
std::vector<ColumnPlace> knownColumns(const std::vector<String>& headings);

/// True when there is a place for the column.
bool holds(const std::vector<ColumnPlace>& columns, AnswerColumn wanted);

} // namespace Tallymoor
