#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "market/HistoryRange.h"
#include "market/PriceUpdater.h"
#include "market/SharePriceCache.h"
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace Tallymoor {

class Progress;
struct HistoryNeed;

/// Prices by code and day, as the books ask for them. The operations are those of TallymoorInternet and of
/// its PriceUpdater, which tell what they are for and what they throw.
class MarketPrices {
public:
  virtual ~MarketPrices();

  virtual double latestPrice(const String& code) = 0;
  virtual double historicalPrice(const String& code, const Date& date, bool upTo) = 0;
  virtual std::optional<KnownClose> closeOn(const String& code, const Date& day) = 0;
  virtual std::optional<KnownClose> lastCloseBefore(const String& code, const Date& day) = 0;
  virtual bool hasAnsweredFor(const String& code, const Date& day) = 0;

  /// The shares that one became by the splits that a source has told of the days; nothing here.
  virtual std::optional<double> toldSplit(const String& code, const Date& first, const Date& last);
  /// The days of all such splits, with their codes; none here.
  virtual std::vector<std::pair<String, Date>> toldSplitDays();

  virtual bool isToBeFetched(const String& code, const Date& day) = 0;
  virtual bool hasCachedHistory(const String& code) = 0;
  virtual bool hasCachedPrice(const String& code, const Date& day) = 0;
  virtual HistoryRange recentRange() = 0;
  /// The same as long as no price, and no failure to get one, has changed.
  virtual std::uint64_t changeStamp() const = 0;
  virtual bool completeHistory(const std::vector<HistoryNeed>& needs, Progress* progress) = 0;

  /// Hears of prices until it is removed; before the views that show them.
  virtual void addRecord(PriceUpdater::PricesObserver& record) = 0;
  virtual void removeRecord(PriceUpdater::PricesObserver& record) = 0;
};

/// Those of the gateway, whichever lives; it may end before the books do.
MarketPrices& gatewayPrices();

} // namespace Tallymoor
