#pragma once
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

class SharePortfolioUser;

/// An event of a portfolio whose day can't be right, as a hand-edited file may hold.
struct WrongDate {
  String kind;  ///< of the event
  String event; ///< what it is known by
  String fault; ///< what is wrong with its day
};

/// Tells the user of each.
void tellOfWrongDates(const SharePortfolioUser& portfolio, const std::vector<WrongDate>& wrong);

} // namespace Tallymoor
