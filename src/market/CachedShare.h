#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>
#include <map>

namespace Tallymoor {

/// Where the close of a day came from.
enum class PriceOrigin : std::uint8_t {
  Source,  ///< a table of the data source; a current price does not replace it
  Filled,  ///< the close of the day before, as on a weekend
  Current, ///< a current price of that day, taken before the day was over
  Typed,   ///< typed by the user; nothing that is fetched replaces it
  Unknown  ///< filled in, typed or current: earlier versions did not record which
};

/// The prices of a code on one day.
struct ShareValue {
  double close = 0.0;
  double high = 0.0; ///< 0 when unknown
  double low = 0.0;  ///< 0 when unknown
  std::int32_t volume = 0;
  PriceOrigin origin = PriceOrigin::Source;
};

/// The cached data of one code: one row per day, and whether the code is treated as delisted.
struct CachedShare {
  std::map<Date, ShareValue> values;
  bool modified = false;   ///< differs from the file; set by every change, cleared by a save
  bool isBad = false;      ///< treated as delisted: its history is not fetched
  bool unreadable = false; ///< its file could not be read and is never overwritten

  /// The row of a day, or null.
  const ShareValue* find(const Date& day) const {
    const auto row = values.find(day);
    return row == values.end() ? nullptr : &row->second;
  }
};

} // namespace Tallymoor
