#pragma once
#include "pages/FormatProposal.h"
#include <optional>

namespace Tallymoor {

// What texts can mean: every way of reading them is tried on all of them.

/// Finds the date pattern, and the time zone where the texts are moments; adds doubts. False when no known
/// pattern reads all texts.
bool settleDays(const std::vector<String>& texts, FormatProposal& proposal);

/// Reads the answer with the format's columns, then finds date pattern, time zone and decimal sign from the
/// rows; adds doubts. Throws AnswerException when there are no rows, or texts in no known form.
void settleTexts(std::string_view bytes, FormatProposal& proposal);

/// A column of which only the texts are known, as in CSV without headings.
struct NamelessColumn {
  String place;
  std::vector<String> texts;
};
/// Finds the day and the prices by what the columns hold; adds a doubt where several may be the close. False
/// without a column of days and one of numbers.
bool settleColumns(const std::vector<NamelessColumn>& columns, FormatProposal& proposal);

} // namespace Tallymoor
