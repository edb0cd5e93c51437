#pragma once
#include "pages/AnswerFormat.h"
#include <string_view>
#include <vector>

namespace Tallymoor {

/// Something that the texts of an answer leave open. A wrong choice would give wrong figures, so the user is
/// asked.
struct FormatDoubt {
  enum class About : std::uint8_t { DateOrder, DecimalSign, TimeZone, CloseColumn };
  About about;
  String example; ///< a text of the answer that can be read in several ways
  /// Values for AnswerFormat::datePattern, decimalSign or timeZone, or for the place of the close. Of a time
  /// zone any other IANA name will do too.
  std::vector<String> choices;
};

/// How an answer with prices seems to be written, worked out from its texts alone.
struct FormatProposal {
  AnswerFormat format; ///< holds the first choice of each doubt
  std::vector<FormatDoubt> doubts;
  bool isHistory = true; ///< past days; otherwise one current price
};

/// Looks at the headings or names (in English, German, French, Spanish, Hungarian and others), at days and
/// numbers of a web page, JSON or CSV. What fits in one way only is taken; what fits in several is a doubt.
/// Throws AnswerException for an answer without prices, with what is missing.
FormatProposal proposeFormat(std::string_view bytes);

/// The same for CSV, in UTF-8, with or without a row of headings.
FormatProposal proposeCsvFormat(std::string_view bytes);
/// The same for JSON: rows as objects or arrays in an array, parallel arrays, objects keyed by their day, or
/// one price somewhere.
FormatProposal proposeJsonFormat(std::string_view bytes);
/// The same for a table of a web page.
FormatProposal proposePageFormat(std::string_view bytes);

/// Puts the answer to a doubt into the format. Throws AnswerException for one that means nothing.
void settle(AnswerFormat& format, FormatDoubt::About about, const String& choice);

} // namespace Tallymoor
