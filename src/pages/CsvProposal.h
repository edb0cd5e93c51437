#pragma once
#include "pages/AnswerFormat.h"
#include <string_view>
#include <vector>

namespace Tallymoor {

/// Something that the texts of an answer leave open. A wrong choice would give wrong figures, so the user is
/// asked.
struct FormatDoubt {
  enum class About : std::uint8_t { DateOrder, DecimalSign };
  About about;
  String example;              ///< a text of the answer that can be read in several ways
  std::vector<String> choices; ///< values for AnswerFormat::datePattern or decimalSign
};

/// How an answer with prices seems to be written, worked out from its texts alone.
struct FormatProposal {
  AnswerFormat format; ///< holds the first choice of each doubt
  std::vector<FormatDoubt> doubts;
};

/// Looks at the headings (in English, German, French, Spanish, Hungarian and others), separators, days and
/// numbers. What fits in one way only is taken; what fits in several is a doubt. Throws AnswerException for a
/// text that is no table of days and closes, with what is missing.
FormatProposal proposeCsvFormat(std::string_view bytes);

} // namespace Tallymoor
