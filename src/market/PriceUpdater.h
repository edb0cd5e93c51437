#pragma once
#include "foundation/BigMutex.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include "foundation/Thread.h"
#include "market/PriceObservers.h"
#include "market/StockNameSearch.h"
#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace Tallymoor {

class Connection;
class PriceHistory;

/// The background thread that keeps the current prices of all codes on view up to date, and from time to time
/// refreshes their recent closes, at once where an observer lacks one. It belongs to the gateway and lives
/// and dies with it.
///
/// What a pass does stands in PricePass. The codes, prices and observers are guarded by the big mutex, which
/// the operations take themselves.
class PriceUpdater : public Thread {
public:
  using PricesObserver = Tallymoor::PricesObserver;
  using Rank = PriceObservers::Rank;

  static constexpr std::uint32_t DEFAULT_START_DELAY = 5000;

  /// What is referred to is not owned and outlives the updater. The delay, in milliseconds, comes before the
  /// first pass. The thread is not started here: the gateway starts it at the end of its own construction.
  PriceUpdater(Connection& connection, PriceHistory& history, std::uint32_t startDelay);
  /// Stops the thread and waits for it, with the big mutex given up meanwhile.
  ~PriceUpdater() override;

  /// As Thread's, but they do nothing while a view date is set: past days need no current prices. The next
  /// pass is one over all codes.
  void start();
  void wakeUp();

  /// From now on the code is kept up to date. A code that is known keeps its price; a delisted one is not
  /// taken. After the first pass a new code is fetched soon, without the others.
  void addCode(const String& code);
  void removeCode(const String& code);
  bool hasCode(const String& code) const;
  std::vector<String> codes() const;
  /// The codes of a pass, all or those that were added since the last one.
  std::vector<String> takeCodes(bool newAlone) REQUIRES(bigMutex());
  /// 0.0 until the first fetch. Throws Exception "PriceUpdater::getCurrentPrice - dont' have this code: ..."
  /// for an unknown code.
  double getCurrentPrice(const String& code) const;
  /// Another number after each change of a current price.
  std::uint64_t changeStamp() const;
  /// Does nothing for an unknown code.
  void setCurrentPrice(const String& code, double price);
  /// The current price, or today's close where there is none yet: may fetch and ask, so for the GUI thread.
  /// Throws what TallymoorInternet::historicalPrice throws, and Exception "PriceUpdater::getLatestPrice -
  /// could not get price for
  /// ...".
  double getLatestPrice(const String& code);

  /// Not owned. Adding twice has no effect. Observers of one rank are called in the order of their
  /// registration.
  void addObserver(PricesObserver* observer, Rank rank = Rank::Views);
  /// Once this returns, the observer is not called any more.
  void removeObserver(PricesObserver* observer);
  bool isObserving(const PricesObserver* observer) const;
  std::vector<PricesObserver*> observers() const;

  /// Tells the observers of rank Records only of a changed close in the cache. Any thread.
  void tellRecords(const String& code, const Date& date, double close);
  /// Tells all observers that fetched prices are being forgotten. Throws as they do.
  void tellPricesForgotten();
  /// Tells all observers that past prices of the code were fetched. Any thread.
  void tellHistoryArrived(const String& code);

  /// Under the big mutex.
  StockNameSearch& names() REQUIRES(bigMutex()) { return m_names; }

  /// One pass over all codes on the calling thread, which must not hold the big mutex. Throws nothing. What
  /// fails for a code leaves the others alone and shows in the status text at the end, with the code that
  /// failed first; in offline mode the pass ends at once.
  void runPass();
  /// Milliseconds between passes by the present setting, at least a minute.
  static std::uint32_t passPeriod();

protected:
  void threadFunction() override;

private:
  void runPass(bool newAlone);
  bool takeNewAlone();
  bool historicalCheckIsDue();
  void scheduleHistoricalCheck();

  Connection& m_connection;
  PriceHistory& m_history;
  std::map<String, double> m_prices GUARDED_BY(bigMutex());
  std::set<String> m_newCodes GUARDED_BY(bigMutex()); ///< added since the last pass
  bool m_isAllDue GUARDED_BY(bigMutex()) = true;      ///< the next pass is one over all codes
  std::uint64_t m_changeStamp GUARDED_BY(bigMutex()) = 0;
  PriceObservers m_observers GUARDED_BY(bigMutex());
  StockNameSearch m_names GUARDED_BY(bigMutex());
  // Used by passes alone.
  std::uint32_t m_lastHistoricalCheck = 0; ///< tick
  std::uint32_t m_historicalInterval = 0;  ///< milliseconds from there to the next one
  std::uint32_t m_allDone = 0;             ///< tick at the end of the last pass over all codes
  bool m_networkFailed = false;            ///< at the end of the last pass
};

} // namespace Tallymoor
