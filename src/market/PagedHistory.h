#pragma once
#include "market/HistoryRange.h"
#include "market/SourceAnswer.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

/// Past prices from a source whose answers cover a limited number of days: from the last page back to the
/// first, up to one that is empty, as those before a stock was listed are. With 0 all days are one page.
template <class FetchPage>
AnsweredHistory pagedHistory(const HistoryRange& range, int daysAPage, FetchPage fetchPage) {
  if (daysAPage <= 0 || range.end.daysSince(range.start) < daysAPage)
    return fetchPage(range);
  AnsweredHistory whole;
  for (HistoryRange page{range.end.plusDays(1 - daysAPage), range.end};;) {
    AnsweredHistory part = fetchPage(page);
    const bool isEmpty = part.prices.empty();
    whole.add(std::move(part));
    if (isEmpty || page.start <= range.start)
      return whole;
    page.end = page.start.plusDays(-1);
    page.start = std::max(range.start, page.end.plusDays(1 - daysAPage));
  }
}

} // namespace Tallymoor
