#pragma once
#include "foundation/BigMutex.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

/// Hears of prices. All calls come under the big mutex with inBackgroundPass set, those of a pass on a
/// background thread: update data, mark what is to be redrawn, and call no widget.
class PricesObserver {
public:
  virtual ~PricesObserver();
  /// A new current price of a code; it never shows as zero.
  virtual void currentPriceUpdated(const String& code, double price) = 0;
  /// One pass over all codes has ended.
  virtual void pricesUpdateFinished();
  /// True when recent closes of the code are missing, so that the pass should ask for them.
  virtual bool wantsHistory(const String& code) const;
  /// A close in the cache has changed, or is gone, which 0 says.
  virtual void historicalPriceChanged(const String& code, const Date& date, double close);
  /// All fetched prices are being forgotten, since others take their place. Throws Exception if that may not
  /// be done.
  virtual void pricesForgotten();
  /// Past prices of the code that were requested have come, or failed, or are not fetched any more.
  virtual void historyArrived(const String& code);
};

/// The registered observers, by rank and then in the order of registration. Under the big mutex.
class PriceObservers {
public:
  /// Records are told of a price before the views that show them.
  enum class Rank { Cache, Records, Views };

  /// Not owned. Adding twice has no effect.
  void add(PricesObserver* observer, Rank rank) REQUIRES(bigMutex());
  void remove(PricesObserver* observer) REQUIRES(bigMutex());
  bool contains(const PricesObserver* observer) const REQUIRES(bigMutex());
  std::vector<PricesObserver*> all() const REQUIRES(bigMutex());
  /// Tells the observers of rank Records only of a changed close.
  void tellRecords(const String& code, const Date& date, double close) const REQUIRES(bigMutex());
  void tellPricesForgotten() const REQUIRES(bigMutex());
  void tellHistoryArrived(const String& code) const REQUIRES(bigMutex());

private:
  struct Registration {
    PricesObserver* observer;
    Rank rank;
  };
  std::vector<Registration> m_registrations GUARDED_BY(bigMutex());
};

} // namespace Tallymoor
