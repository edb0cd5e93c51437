#pragma once
#include "market/SharePriceCache.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace Tallymoor {

/// Why a fetched price is not taken before the user has been asked.
enum class DoubtReason : std::uint8_t {
  Jump,  ///< more than three times the price before it, or less than a third
  Unit,  ///< about 100 times the price before it, or a hundredth: cents taken for dollars, or the reverse
  Range, ///< outside the high and low of its own day, or the high lies below the low
  Contradiction, ///< another close, by more than one percent, of a day whose close is already known
  Currency,      ///< in another currency than the stock's
  Future         ///< of a day to come
};

/// A fetched price that is kept aside.
struct DoubtfulPrice {
  Date day;
  ShareValue value;
  DoubtReason reason;
  std::optional<KnownClose> known; ///< what it was compared with; nothing for Range, Currency and Future
  // For Currency.
  String currency{};      ///< of the price
  String usualCurrency{}; ///< of the stock
};

/// A page of past prices, divided.
struct CheckedPrices {
  SharePriceCache::Rows good;
  std::vector<DoubtfulPrice> doubtful; ///< by day
};

/// Compares each row of a page with the close before it, in the page or known, with its own high and low, and
/// with a close of the source that is known for its day. A page that leads up to known days is compared with
/// the first of these.
///
/// A jump after which at least two more rows keep the new level is no doubt: the source knows of it, as of a
/// split long ago. With mayChangeLevel false it is one all the same.
CheckedPrices checkPrices(const CachedShare& known, const SharePriceCache::Rows& fetched,
                          bool mayChangeLevel = true);

/// Compares a current price with the last known close up to the day. Nothing if the price is plausible, or if
/// no close is known.
std::optional<DoubtfulPrice> checkCurrentPrice(const CachedShare& known, const Date& day, double price);

/// What is known of the doubt, as a sentence for the user: the new and the old price with their days, and a
/// likely reason.
String doubtText(const String& code, const DoubtfulPrice& price);

} // namespace Tallymoor
