#pragma once
#include "PriceHistory.h"
#include <map>
#include <mutex>
#include <optional>
#include <string_view>

namespace SampleService {

struct Security;

/// A made-up market, the same on every machine: each code's prices follow from its name alone, in whole
/// numbers, from its listing day up to the last finished trading day before the given today. Two splits and a
/// merge are among them. Safe on any thread.
class SampleMarket {
public:
  static const std::vector<Listing>& listings();

  /// Nothing for a code that is not listed. Rows are those of days before today.
  std::optional<PriceHistory> history(std::string_view code, Day today) const;
  /// The price at a minute of today, in ten-thousandths: it moves from the day's open to its close, and
  /// stands still on days without trading.
  std::optional<std::int64_t> quote(std::string_view code, Day today, int minuteOfDay) const;

private:
  const PriceHistory& computed(const Security& security, Day today) const;

  mutable std::mutex m_mutex;
  mutable std::map<std::string, PriceHistory, std::less<>> m_histories; ///< up to m_computedFor
  mutable Day m_computedFor{};
};

} // namespace SampleService
