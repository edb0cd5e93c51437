#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <optional>
#include <vector>

namespace Tallymoor {

/// Brings the prices of a comparison index into the cache before figures of many days are computed from them.
/// Each figure by itself would fetch what is missing, and for an index that can't be had the user would be
/// asked about it again and again; here the first failure ends the matter.
///
/// GUI thread, under the big mutex.
class IndexHistory {
public:
  /// Fetches what is not known of these days, given from the newest to the oldest, until one can't be had. A
  /// day that the data source turned out not to have is not asked for again, nor are those before it.
  void fetch(const String& code, const std::vector<Date>& days);

  /// True when the price of the day can be had with no fetch.
  static bool isKnown(const String& code, const Date& day);

private:
  bool isHopeless(const Date& day) const;

  String m_code;
  std::optional<Date> m_lastDayWithout; ///< the source has neither this day nor, most likely, an earlier one
};

} // namespace Tallymoor
