#pragma once
#include "foundation/String.h"
#include <string_view>
#include <vector>

namespace Tallymoor {

class XMLPortfolios;

// A file of records that was edited by hand, or damaged, may hold a text that is no date. Only its own entry
// must suffer: it is put on a day far in the future, where no figure counts it, and the text is kept in an
// attribute, which is written with the records. The user may correct it in the table, or in the file.

/// Where such a date stands.
struct UnreadableDate {
  String portfolio;
  String entry; ///< as "ABC.AX, purchase 3"
  String text;  ///< the date as it stands in the file
};

/// Sets all unreadable dates of the records aside and returns them, with those of earlier runs. Dates that
/// have been corrected since then count again.
std::vector<UnreadableDate> setAsideUnreadableDates(XMLPortfolios& records);

/// The message to the user: each date with portfolio, stock, and line in the file with the given content.
/// Empty if there is none.
String unreadableDatesText(const std::vector<UnreadableDate>& dates, std::string_view fileContent);

} // namespace Tallymoor
