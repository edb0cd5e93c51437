#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

/// Hears of prices. All calls come under the big mutex with inBackgroundPass set, those of a pass on the
/// updater's thread: update data, mark what is to be redrawn, and call no widget.
class PricesObserver {
public:
  virtual ~PricesObserver();
  /// A new current price of a code; it never shows as zero.
  virtual void currentPriceUpdated(const String& code, double price) = 0;
  /// One pass over all codes has ended.
  virtual void pricesUpdateFinished();
  /// True when recent closes of the code are missing, so that the pass should ask for them.
  virtual bool wantsHistory(const String& code) const;
  /// A close in the cache has changed.
  virtual void historicalPriceChanged(const String& code, const Date& date, double close);
};

/// Who hears of prices: by rank, and within a rank in the order of registration. Under the big mutex.
class PriceObservers {
public:
  /// Whoever keeps records must hear of a price before the views that show them.
  enum class Rank { Cache, Records, Views };

  /// Not owned. Adding twice has no effect.
  void add(PricesObserver* observer, Rank rank);
  void remove(PricesObserver* observer);
  bool contains(const PricesObserver* observer) const;
  std::vector<PricesObserver*> all() const;
  /// Tells those who keep records, and nobody else, of a close that has changed.
  void tellRecords(const String& code, const Date& date, double close) const;

private:
  struct Registration {
    PricesObserver* observer;
    Rank rank;
  };
  std::vector<Registration> m_registrations;
};

} // namespace Tallymoor
