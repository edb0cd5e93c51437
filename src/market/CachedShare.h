#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>
#include <map>

namespace Tallymoor {

/// The prices of a code on one day. Volume 0 means that the row came from no table of the data source: it was
/// filled in, typed by the user, or taken from the current price.
struct ShareValue {
  double close = 0.0;
  double high = 0.0; ///< 0 when unknown
  double low = 0.0;  ///< 0 when unknown
  std::int32_t volume = 0;
};

/// What is known of one code: a row a day, and whether the code is treated as delisted.
struct CachedShare {
  std::map<Date, ShareValue> values;
  bool modified = false;   ///< differs from the file; set by every change, cleared by a save
  bool isBad = false;      ///< treated as delisted: its history is not fetched
  bool unreadable = false; ///< its file could not be read, so it stays as it is and is never written over

  /// The row of a day, or null.
  const ShareValue* find(const Date& day) const {
    const auto row = values.find(day);
    return row == values.end() ? nullptr : &row->second;
  }
};

} // namespace Tallymoor
