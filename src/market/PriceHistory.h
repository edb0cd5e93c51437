#pragma once
#include "foundation/BigMutex.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include "market/HistoryFailures.h"
#include "market/HistoryPage.h"
#include "market/HistoryRange.h"
#include "market/PriceQuarantine.h"
#include "market/SharePriceCache.h"
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace Tallymoor {

class Connection;
class FetchQuestions;
class Progress;

/// Past prices by code and day: the cache, and the fetches that fill it. Gaps in a page of the source are
/// filled. Failures are remembered until the program ends, and the user is asked about each once.
///
/// TallymoorInternet describes the operations. Callers hold the big mutex. Fetches run on other threads while
/// the caller waits.
class PriceHistory {
public:
  /// Called for each close in the cache that is new or has changed; with 0 for a day that has no price any
  /// more, nor one before it.
  using CloseChanged = std::function<void(const String& code, const Date& day, double close)>;

  /// What is referred to is not owned. decisionsFile is that of the quarantine.
  PriceHistory(const String& cacheDirectory, const String& decisionsFile, const Connection& connection,
               FetchQuestions& questions, CloseChanged closeChanged);

  SharePriceCache& cache() REQUIRES(bigMutex()) { return m_cache; }
  PriceQuarantine& quarantine() REQUIRES(bigMutex()) { return m_quarantine; }
  /// The current price of today, or the last known close while that price is doubtful.
  double admittedPrice(const String& code, const AnsweredPrice& price) REQUIRES(bigMutex());
  /// Stores prices that were accepted.
  void keepAccepted(const String& code, const PriceQuarantine::Prices& accepted) REQUIRES(bigMutex());

  double closeOf(const String& code, const Date& day, bool upTo) REQUIRES(bigMutex());
  double cachedPrice(const String& code, const Date& day, int column) REQUIRES(bigMutex());
  std::optional<double> cachedClose(const String& code, const Date& day) REQUIRES(bigMutex());
  SharePriceCache::Rows cachedRows(const String& code, const Date& first, const Date& last)
      REQUIRES(bigMutex());
  bool isBad(const String& code) REQUIRES(bigMutex()) { return m_cache.isBad(code); }

  bool hasAnsweredFor(const String& code, const Date& day) REQUIRES(bigMutex());
  /// True if a close has changed.
  bool setTypedPrice(const String& code, const Date& day, double close) REQUIRES(bigMutex());
  /// The days that have no price any more; their failures of before are forgotten.
  SharePriceCache::Closes removeTypedPrice(const String& code, const Date& day) REQUIRES(bigMutex());
  SharePriceCache::Closes keepRecent(const String& code, const HistoryRange& range,
                                     const DataSource::Rows& rows) REQUIRES(bigMutex());
  bool completeHistory(const std::vector<HistoryNeed>& needs, Progress* progress) REQUIRES(bigMutex());

  /// If the request for the price up to the day is known to fail, asks the user as closeOf does, and forgets
  /// the failure if he wants another try.
  void offerAnotherTry(const String& code, const Date& day) REQUIRES(bigMutex());

  // The requests for a day, for those who make them in their own way.

  /// True when some of the days are neither cached nor known to fail, and may be fetched.
  bool isMissing(const HistoryNeed& need) REQUIRES(bigMutex()) { return nextDay(need).has_value(); }
  /// The next request for the days; nothing if none is missing. A refresh is tried once a day.
  std::optional<DayFetch> nextFetch(const HistoryNeed& need) REQUIRES(bigMutex());
  /// Stores the page of the last request. True if another request must follow.
  bool keepPage(DayFetch& fetch, const HistoryPage& page) REQUIRES(bigMutex());
  /// True if the last page could not be fetched because the network failed.
  bool hasNetworkFailed() const REQUIRES(bigMutex()) { return m_networkFailed; }
  /// Records the request as failed, without a question.
  void noteCancelled(const DayFetch& fetch) REQUIRES(bigMutex());

  /// Another number after each change of a past price, or of what is known to fail.
  std::uint64_t changeStamp() const REQUIRES(bigMutex()) {
    return m_cache.changeStamp() + m_failures.changeStamp();
  }

  void forgetFailures() REQUIRES(bigMutex());
  void clearBad(const String& code) REQUIRES(bigMutex());
  void clear() REQUIRES(bigMutex());
  /// Only what was typed stays, in the files too; then calls what depends on that. If either fails, throws
  /// with all prices as they were.
  void forgetFetched(const std::function<void()>& then) REQUIRES(bigMutex());

private:
  void fetchDayVisibly(const String& code, const Date& day, bool upTo) REQUIRES(bigMutex());
  void fetchDay(const String& code, const Date& day, bool upTo) REQUIRES(bigMutex());
  DayFetch beginFetch(const String& code, const Date& day, bool upTo) REQUIRES(bigMutex());
  std::optional<Date> nextDay(const HistoryNeed& need) REQUIRES(bigMutex());
  std::optional<Date> firstMissingDay(const HistoryNeed& need, bool upTo) REQUIRES(bigMutex());
  std::optional<Date> lastMissingDay(const String& code, const Date& first, const Date& last)
      REQUIRES(bigMutex());
  bool isKnownToFail(const String& code, const Date& day) const REQUIRES(bigMutex());
  bool wantsAnotherTry(const String& code, const HistoryFailures::Failure& failure) REQUIRES(bigMutex());
  SharePriceCache::Closes keepRows(const String& code, const DataSource::Rows& rows,
                                   const HistoryRange& range) REQUIRES(bigMutex());
  void tell(const String& code, const SharePriceCache::Closes& changed) const;

  SharePriceCache m_cache GUARDED_BY(bigMutex());
  PriceQuarantine m_quarantine GUARDED_BY(bigMutex());
  const Connection& m_connection;
  FetchQuestions& m_questions;
  const CloseChanged m_closeChanged;
  HistoryFailures m_failures GUARDED_BY(bigMutex());
  bool m_networkFailed GUARDED_BY(bigMutex()) = false;
  /// The real day on which the closes of a code from a day on were last refreshed.
  std::map<std::pair<String, Date>, Date> m_refreshes GUARDED_BY(bigMutex());
  /// The ranges that the source has answered for in this run.
  std::map<String, std::vector<HistoryRange>> m_answered GUARDED_BY(bigMutex());
};

} // namespace Tallymoor
