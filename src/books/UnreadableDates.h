#pragma once
#include "foundation/String.h"
#include <string_view>
#include <vector>

namespace Tallymoor {

class XMLPortfolios;

// A file of records that was edited by hand, or damaged, may hold a date that is none. It must cost no more
// than its own entry: the entry is put on a day far in the future, where no figure counts it, and the date as
// it stood is kept in an attribute, which is written with the records. The user may put it right in the
// table, or in the file.

/// Where such a date stands.
struct UnreadableDate {
  String portfolio;
  String entry; ///< as "ABC.AX, purchase 3"
  String text;  ///< the date as it stands in the file
};

/// Sets all unreadable dates of the records aside and tells of them, of those from earlier runs, too. Dates
/// that have been put right since then count again.
std::vector<UnreadableDate> setAsideUnreadableDates(XMLPortfolios& records);

/// What the user is told: each date with portfolio, stock, and line in the file of which the content is
/// given. Empty when there is none.
String unreadableDatesText(const std::vector<UnreadableDate>& dates, std::string_view fileContent);

} // namespace Tallymoor
