#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "foundation/Thread.h"
#include "market/SharePriceCache.h"
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace Tallymoor {

class TallymoorInternet;

/// The background thread that keeps the current prices of all codes on view up to date, and from time to time
/// refreshes their recent closes, at once where an observer lacks one. It belongs to the gateway and lives
/// and dies with it.
///
/// A pass works on copies of the codes and observers, taken at its start. Prices are fetched without any
/// lock; everything else runs in short stretches under the big mutex with inBackgroundPass set, and before
/// each of them, again with the mutex in hand, the pass looks whether it has been told to stop. The codes,
/// prices and observers are guarded by the big mutex, which the operations take themselves.
class PriceUpdater : public Thread {
public:
  /// Hears of prices. All calls come on the updater's thread under the big mutex with inBackgroundPass set:
  /// update data, mark what is to be redrawn, and call no widget.
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

  /// Whoever keeps records must hear of a price before the views that show them.
  enum class Rank { Cache, Records, Views };

  static constexpr std::uint32_t DEFAULT_START_DELAY = 5000;

  /// The gateway is not owned and outlives the updater. The delay, in milliseconds, comes before the first
  /// pass. The thread is not started here: the gateway starts it at the end of its own construction.
  explicit PriceUpdater(TallymoorInternet& gateway, std::uint32_t startDelay = DEFAULT_START_DELAY);
  /// Stops the thread and waits for it, with the big mutex given up meanwhile.
  ~PriceUpdater() override;

  /// As Thread's, but they do nothing while a view date is set: past days need no current prices.
  void start();
  void wakeUp();

  /// From now on the code is kept up to date. A code that is known keeps its price; a delisted one is not
  /// taken.
  void addCode(const String& code);
  void removeCode(const String& code);
  bool hasCode(const String& code) const;
  /// 0.0 until the first fetch. Throws Exception "PriceUpdater::getCurrentPrice - dont' have this code: ..."
  /// for an unknown code.
  double getCurrentPrice(const String& code) const;
  /// Does nothing for an unknown code.
  void setCurrentPrice(const String& code, double price);
  /// The current price, or today's close where there is none yet: may fetch and ask, so for the GUI thread.
  /// Throws what the gateway throws, and Exception "PriceUpdater::getLatestPrice - could not get price for
  /// ...".
  double getLatestPrice(const String& code);

  /// Not owned. Adding twice has no effect. Observers of one rank are called in the order of their
  /// registration.
  void addObserver(PricesObserver* observer, Rank rank = Rank::Views);
  /// Once this returns, the observer is not called any more.
  void removeObserver(PricesObserver* observer);

  /// Tells those who keep records, and nobody else, of a close that has changed in the cache. Any thread.
  void tellRecords(const String& code, const Date& date, double close);

  /// One pass over all codes on the calling thread, which must not hold the big mutex. Throws nothing. What
  /// fails for a code leaves the others alone and shows in the status text at the end, with the code that
  /// failed first; in offline mode the pass ends at once.
  void runPass();
  /// Milliseconds between passes by the present setting, at least a minute.
  static std::uint32_t passPeriod();

protected:
  void threadFunction() override;

private:
  struct Registration {
    PricesObserver* observer;
    Rank rank;
  };
  using Observers = std::vector<PricesObserver*>;
  /// What a pass could not get.
  struct PassFailures {
    String first; ///< code and reason
    std::set<String> codes;
    String text() const;
  };

  // The parts of a pass. A false result means that the thread has been told to stop and nothing more may be
  // done.
  bool walkCodes();
  bool updateCurrentPrice(const String& code, const Observers& observers);
  bool refreshRecentCloses(const String& code, const Observers& observers);
  bool tellChanges(const String& code, const SharePriceCache::Closes& changed, const Observers& observers);
  bool isHistoryWanted(const String& code, const Observers& observers);
  template <class Tell>
  bool tellObservers(const Observers& observers, Tell tell);
  template <class Work>
  bool inStretch(Work work);
  template <class Step>
  bool attempt(const String& code, PassFailures& failures, Step step);

  bool isObserving(const PricesObserver* observer) const;
  bool historicalCheckIsDue();
  void scheduleHistoricalCheck();

  TallymoorInternet& m_gateway;
  std::map<String, double> m_prices;         ///< guarded by the big mutex
  std::vector<Registration> m_registrations; ///< by rank, then by registration; guarded by the big mutex
  std::uint32_t m_lastHistoricalCheck = 0;   ///< tick; used by passes alone
  std::uint32_t m_historicalInterval = 0;    ///< milliseconds from there to the next one
};

} // namespace Tallymoor
