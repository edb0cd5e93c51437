#pragma once
#include "foundation/String.h"
#include "pages/AnswerFormat.h"
#include <string_view>
#include <vector>

namespace Tallymoor {

/// A text of an answer, and a column in which it stands.
struct AnswerPlace {
  String text;
  String where;    ///< "$.values[3].close", "row 5, field 2"
  String column;   ///< a place for a format: "$.values[*].close", a heading or a number
  std::size_t row; ///< of the column, from 0
};

/// All texts of an answer in JSON or CSV. A text of JSON stands in several columns when it lies in several
/// lists. Texts deeper than a hundred levels are left out. Throws AnswerException for an answer that can't be
/// read.
std::vector<AnswerPlace> placesInAnswer(std::string_view bytes);

/// A format in which the columns of these places can be read; it has none yet.
AnswerFormat formatForPlaces(std::string_view bytes);

} // namespace Tallymoor
