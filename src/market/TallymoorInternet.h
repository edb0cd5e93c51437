#pragma once
#include "foundation/BigMutex.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include "market/CodeSearchResult.h"
#include "market/Connection.h"
#include "market/FetchQuestions.h"
#include "market/HistoryFetcher.h"
#include "market/PriceHistory.h"
#include "market/PriceUpdater.h"
#include "market/ToldDividends.h"
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace Tallymoor {

class PriceStatus;

/// The one door to market data: a thin face over the connection to the data source, the history of past
/// prices, and the price updater. It answers from the cache where it can, fetches where it must, and asks the
/// user when a fetch fails.
///
/// Unless told otherwise an operation belongs to the GUI thread or to a stretch of a background pass, under
/// the big mutex. While inBackgroundPass is set nothing is asked or shown: failures go straight to the
/// caller.
///
/// The capital records hear of every close that changes in the cache, whoever had it fetched.
///
/// A fetch on the GUI thread ends when the user or the system wants it (UserInteraction::isStopWanted).
///
/// Failures: HTTPException when the network failed or the gateway is offline, HTMLException when a page is
/// not what its locator says, XMLException once for a code whose cache file can't be read.
class TallymoorInternet : public PriceUpdater::PricesObserver {
public:
  using ClientFactory = Connection::ClientFactory;

  /// How the gateway is built; the defaults are the program's own.
  struct Options {
    std::uint32_t updaterStartDelay =
        PriceUpdater::DEFAULT_START_DELAY; ///< milliseconds before the first pass
    bool startUpdater = true;              ///< false: no pass runs until start, wakeUp or runPass is called
    ClientFactory makeClient;              ///< createHTTPClient when empty
  };

  /// The singleton, built at the first call. Throws Exception "in shutdown mode" after the shut-down,
  /// XMLException for a locator document that can't be read, HTMLException when one names no locator to use.
  /// Any thread.
  static TallymoorInternet& Instance();
  /// False before the first call of Instance and after the shut-down. Any thread.
  static bool exists();
  /// Ends the gateway for good: stops and joins the updater with the big mutex given up, saves, destroys.
  /// Safe to call again. False when the prices of some code could not be written; call save first to hear
  /// why.
  static bool shutdown();
  /// Takes new locator documents into the living gateway: codes, prices, observers and the offline state
  /// stay. When the new ones are no good, throws as Instance does, and the old ones stay in use. Any thread.
  static void reset();
  /// How the next gateway is built; for tests, which call it before the first Instance.
  static void setOptions(Options options);
  /// For tests: as shutdown, but the next Instance builds a new gateway, by default options.
  static void shutdownForNextTest();

  ~TallymoorInternet() override;
  TallymoorInternet(const TallymoorInternet&) = delete;
  TallymoorInternet& operator=(const TallymoorInternet&) = delete;

  /// The price of now: the updater's if wanted and there, else fetched. Silent fetches ask nothing; those are
  /// for threads that don't hold the big mutex, which is taken only to begin.
  double currentPrice(const String& code, bool useUpdater, bool silent);
  /// The close of a day, from the cache if it is there. Else fetches a range that reaches from the date on,
  /// or up to it, and fills its gaps, so that weekends have the close of the day before. Throws Exception
  /// "TallymoorInternet::getCachedPrice - dont have cached price for code ..." when the source has no such
  /// day, and "TallymoorInternet::historicalPrice - code does not exist(cached): ..." for a delisted code.
  double historicalPrice(const String& code, const Date& date, bool upTo);

  /// The days up to today that a pass of the updater asks for as one page.
  HistoryRange recentRange() const;

  /// What could not be fetched is remembered for the run, by code and days, and not asked for again; nor is
  /// the user (see FetchQuestions). From here on everything is tried afresh. Going online does this, too.
  void forgetFailures();
  /// Column 1 is the high, 2 the low, any other the close. Throws Exception as historicalPrice does; never
  /// fetches.
  double getCachedPrice(const String& code, const Date& date, int column);
  bool hasCachedPrice(const String& code, const Date& date);
  /// The cached close in a single look-up, if there is one.
  std::optional<double> cachedClose(const String& code, const Date& date);
  /// What is known of the day without fetching: its close, or the last one before it. Neither shows as zero.
  std::optional<KnownClose> closeOn(const String& code, const Date& day);
  std::optional<KnownClose> lastCloseBefore(const String& code, const Date& day);
  /// The last close up to the day that was not filled in from the day before.
  std::optional<KnownClose> lastTradedClose(const String& code, const Date& day);
  /// True when the source has answered for the day in this run, be it without a close; a delisted code is not
  /// asked any more, so that its last close counts as the answer.
  bool hasAnsweredFor(const String& code, const Date& day);
  /// The cached rows from the first to the last day, both included.
  SharePriceCache::Rows cachedRows(const String& code, const Date& first, const Date& last);
  /// Has the missing days fetched in the background and returns at once. Observers hear of each page
  /// (PricesObserver::historyArrived). Asks and throws nothing, and leaves out what has failed in this run; a
  /// refresh is tried once a day, and again after going online. True if something is missing that will be
  /// fetched; false offline.
  bool requestHistory(const HistoryNeed& need);
  /// The same, but throws NotYetKnown where requestHistory gives true: for figures that can't do without.
  void requireHistory(const HistoryNeed& need);
  /// The same for the price that historicalPrice gives with upTo, or latestPrice for today; afterwards they
  /// fetch nothing. Asks the user whether to try again a request that has failed, as historicalPrice does.
  void requirePrice(const String& code, const Date& day);
  /// Fetches what is missing of many codes, before their days are asked for one by one, and waits for it:
  /// several fetches at a time, page by page, up to a failure, of which those questions will tell. Tells the
  /// progress, if there is one, and lets events pass meanwhile. Asks and throws nothing itself, and does
  /// nothing offline. False when the user, or the end of the program, wanted it to end.
  bool completeHistory(const std::vector<HistoryNeed>& needs, Progress* progress);
  /// True when the price of the day is neither cached nor known to fail, and the gateway is online.
  bool isToBeFetched(const String& code, const Date& day);
  /// True when any price of the code is cached.
  bool hasCachedHistory(const String& code);
  /// Another number whenever an operation above may give another price than before.
  std::uint64_t changeStamp() const;
  /// Codes by a part of a name. An unreadable page counts as one without matches.
  std::vector<CodeSearchResult> stockSearch(const String& text, bool isShare, bool usOnly);
  /// A price typed by the user, which no fetched one replaces; today's also becomes the current price unless
  /// a view date is set. A day after the real today is left alone.
  void setCachedPrice(const String& code, const Date& date, double close);
  /// The same for the high and the low of a day that has a close, which then counts as typed, too; 0 for one
  /// that is not known.
  void setCachedRange(const String& code, const Date& date, double high, double low);
  /// Takes a typed price back, and fetches what the source has for the day. Does nothing for any other price.
  void removeTypedPrice(const String& code, const Date& date);

  // Doubtful prices (see PriceQuarantine), which wait for the user's decision; meanwhile the last good price
  // counts.

  /// What waits, by code.
  std::map<String, PriceQuarantine::Prices> doubtfulPrices();
  /// Called, on any thread and under the big mutex, when other codes have doubtful prices than before.
  void setDoubtWatcher(std::function<void()> watcher);
  /// Takes the doubtful prices of the code into the history, with fromNowOn also later ones that are doubted
  /// for the same reason. Throws Exception when the decision can't be written; it then counts for this run.
  void acceptDoubtful(const String& code, bool fromNowOn);
  /// Drops them: they are not asked about again. Throws as acceptDoubtful does.
  void refuseDoubtful(const String& code);

  // What sources tell besides prices.

  /// The dividends that the user has not refused, by code; they may be recorded.
  std::map<String, ToldDividends::OfCode> toldDividends();
  /// Throws Exception when that can't be written; it then counts for this run.
  void settleToldDividend(const String& code, const Date& day);
  /// The shares that one became by the splits that a source has told of the days, both included.
  std::optional<double> toldSplit(const String& code, const Date& first, const Date& last);
  std::vector<std::pair<String, Date>> toldSplitDays();

  bool isBadCode(const String& code);
  void markBadCode(const String& code);
  void clearBadCode(const String& code);
  /// All codes marked as delisted, sorted, those in cache files among them.
  std::vector<String> badCodes();

  /// Any thread.
  bool isOnline() const;
  /// Goes offline, then online with a new client, and tries a search; true when that found something. Shows
  /// and asks nothing. The updater runs afterwards unless a view date is set or the connection itself failed.
  bool reconnect();
  /// Ends the background threads, with what they fetch, and waits for that with the big mutex given up.
  void goOffline();

  /// Stops the updater for as long as a view date is set, and ends other fetches in the background: call it
  /// before Date::setFixedDate. The big mutex is given up while the threads end.
  void pauseUpdates();
  /// The way back to today, after Date::clearFixedDate: starts the updater when online.
  void resumeUpdates();

  /// Writes the cached prices that have changed. A code that fails does not stop the others; then throws
  /// Exception.
  void save();
  /// The same for one code, as after a price was typed. Throws Exception also if its file can't be read and
  /// is therefore not overwritten.
  void save(const String& code);
  /// Forgets all cached prices and deletes every XML file in the cache folder.
  void clear();

  PriceUpdater& priceUpdater() { return m_updater; }
  HistoryFetcher& historyFetcher() { return m_fetcher; }
  /// Where prices come from, and what can be done about it.
  PriceStatus& priceStatus() { return *m_status; }

  /// A fetched current price goes into the day's row, unless the data source has already closed that day.
  void currentPriceUpdated(const String& code, double price) override;

private:
  explicit TallymoorInternet(const Options& options);

  bool dataSourceAnswers();
  double admitted(const String& code, const AnsweredPrice& price);
  DataSource dataSource(const String& operation) const;
  std::optional<double> beginCurrentPrice(const String& code, bool useUpdater);
  bool wantsRetry(const String& question);

  // All guarded by the big mutex.
  Connection m_connection GUARDED_BY(bigMutex());
  FetchQuestions m_questions GUARDED_BY(bigMutex());
  PriceHistory m_history GUARDED_BY(bigMutex());
  ToldDividends m_toldDividends GUARDED_BY(bigMutex());
  PriceUpdater m_updater;
  HistoryFetcher m_fetcher;
  const std::unique_ptr<PriceStatus> m_status;
};

} // namespace Tallymoor
