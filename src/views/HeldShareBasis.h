#pragma once
#include "books/DayPrice.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>
#include <map>
#include <optional>

namespace Tallymoor {

class SharePortfolioUser;
class XMLHeldShare;

/// All that the cells of a whole share are computed from, apart from what the portfolio is worth. As long as
/// it stays equal, so do they.
struct HeldShareBasis {
  Date day = Date();
  double number = 0.0;
  PriceStanding standing = PriceStanding::Final; ///< of the day's price in the capital record
  std::uint64_t purchases = 0;                   ///< stamp of the held share, with its limits
  std::uint64_t sales = 0;    ///< stamp of its sales, whose prices and splits may stand in; 0 without sales
  std::uint64_t prices = 0;   ///< stamp of all prices
  std::uint64_t settings = 0; ///< stamp of the settings, which hold the companies' names
  bool hasAutomaticLimits = false;
  bool operator==(const HeldShareBasis&) const = default;
};

/// The stocks of a portfolio while a table is filled: each is found without a search.
class HeldShareBases {
public:
  /// The records must not change while it lives.
  explicit HeldShareBases(SharePortfolioUser& portfolio);

  /// Null if the stock is not held.
  XMLHeldShare* heldShare(const String& code) const;
  /// Nothing while a view date is set: the prices are then those of the capital record's days.
  std::optional<HeldShareBasis> of(const String& code, double number, PriceStanding standing) const;

private:
  struct Stock {
    XMLHeldShare* held = nullptr;
    std::uint64_t sales = 0;
  };
  std::map<String, Stock> m_stocks;
  HeldShareBasis m_common; ///< what is the same for all stocks
};

} // namespace Tallymoor
