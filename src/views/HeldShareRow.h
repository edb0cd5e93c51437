#pragma once
#include "foundation/String.h"
#include <optional>

namespace Tallymoor {

class SharePortfolioUser;
class SharesHeldTable;
class XMLElement;

/// What a row of shares is computed from: a whole share, or one purchase of it. The elements belong to the
/// records; a table that reads them is told before they change.
struct HeldShareRow {
  String code;
  std::optional<double> numberOnDay; ///< of the day's record; nothing for a purchase
  XMLElement* heldShare = nullptr;
  XMLElement* buyEvent = nullptr; ///< null for a whole share
  SharePortfolioUser* portfolio = nullptr;
  SharesHeldTable* table = nullptr;
};

} // namespace Tallymoor
