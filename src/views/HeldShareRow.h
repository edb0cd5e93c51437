#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "views/HeldShareBasis.h"
#include <cstdint>
#include <optional>

namespace Tallymoor {

class Row;
class SharePortfolioUser;
class Table;
class XMLBuyEvent;
class XMLHeldShare;

/// What a row of stocks is computed from: a whole share that is held, one purchase of it, or a stock that is
/// watched, which has no elements and no portfolio. The elements belong to the records; a table that reads
/// them is told before they change.
struct HeldShareRow {
  String code;
  std::optional<double> numberOnDay; ///< of the day's record; nothing for a purchase
  XMLHeldShare* heldShare = nullptr;
  XMLBuyEvent* buyEvent = nullptr; ///< null for a whole share
  SharePortfolioUser* portfolio = nullptr;
  Table* table = nullptr;
  Row* row = nullptr;
  std::optional<HeldShareBasis> basis; ///< of a whole share when its cells were computed
  /// What heldValueSince gave for a day while the prices had that stamp.
  struct EarlierValue {
    Date day;
    std::uint64_t prices;
    double value;
  };
  std::optional<EarlierValue> earlierValue;
};

} // namespace Tallymoor
