#pragma once
#include "PriceHistory.h"
#include <map>
#include <mutex>
#include <optional>
#include <string_view>

namespace SampleService {

struct Security;

/// A simulated market, identical on every machine. Prices are integers derived from the code alone, from the
/// listing day to the last finished trading day. Contains two splits and a merge. Thread-safe.
class SampleMarket {
public:
  static const std::vector<Listing>& listings();

  /// Empty if the code is not listed. Contains only days before today.
  std::optional<PriceHistory> history(std::string_view code, Day today) const;
  /// The price at a minute of today, in ten-thousandths. Moves from the day's open to its close; constant on
  /// days without trading.
  std::optional<std::int64_t> quote(std::string_view code, Day today, int minuteOfDay) const;

private:
  const PriceHistory& computed(const Security& security, Day today) const;

  mutable std::mutex m_mutex;
  mutable std::map<std::string, PriceHistory, std::less<>> m_histories; ///< Up to m_computedFor.
  mutable Day m_computedFor{};
};

} // namespace SampleService
