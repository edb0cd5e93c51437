#include "views/ChangedHoldings.h"
#include "xml/PortfolioRecords.h"
#include <utility>

namespace Tallymoor {

ChangedHoldings::Changes ChangedHoldings::look(const std::vector<const XMLHeldShare*>& shares) {
  Changes changes;
  std::map<const XMLHeldShare*, Seen> seen;
  for (const XMLHeldShare* share : shares) {
    auto before = m_seen.extract(share);
    if (!before.empty() && before.mapped().stamp == share->changeStamp()) {
      seen.insert(std::move(before));
      continue;
    }
    const String& code = share->code();
    changes.codes.insert(code);
    changes.areOtherStocks |= before.empty() || !(before.mapped().code == code);
    seen.insert_or_assign(share, Seen{share->changeStamp(), code});
  }
  changes.areOtherStocks |= !m_seen.empty();
  m_seen = std::move(seen);
  return changes;
}

} // namespace Tallymoor
