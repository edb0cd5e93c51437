#pragma once
#include "market/HistoryRange.h"
#include "market/SourceAnswer.h"
#include <iterator>
#include <optional>

namespace Tallymoor {

/// Days enough to hold a close, whatever holidays there are.
inline HistoryRange recentDays() {
  constexpr int DAYS = 14;
  return {Date::realToday().plusDays(-DAYS), Date::realToday()};
}

/// The last close of a history as the current price.
inline std::optional<AnsweredPrice> lastPrice(const AnsweredHistory& history) {
  if (history.prices.empty())
    return std::nullopt;
  const auto& [day, value] = *std::prev(history.prices.end());
  return AnsweredPrice{value.close, day, history.currency};
}

inline void dropAfter(AnsweredHistory& history, const Date& last) {
  history.prices.erase(history.prices.upper_bound(last), history.prices.end());
}

} // namespace Tallymoor
