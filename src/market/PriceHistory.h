#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "market/HistoryFailures.h"
#include "market/HistoryPage.h"
#include "market/HistoryRange.h"
#include "market/SharePriceCache.h"
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace Tallymoor {

class Connection;
class FetchQuestions;
class Progress;

/// Past prices by code and day: the cache, and what is fetched into it. A page of the source is kept with its
/// gaps filled; what the source could not give is remembered for the run, and asked about once.
///
/// The operations are those of TallymoorInternet, which tells what they are for. Under the big mutex; fetches
/// are made on other threads, and waited for here.
class PriceHistory {
public:
  /// Hears of each close that is new in the cache or another one; none that shows as zero.
  using CloseChanged = std::function<void(const String& code, const Date& day, double close)>;

  /// What is referred to is not owned.
  PriceHistory(const String& cacheDirectory, const Connection& connection, FetchQuestions& questions,
               CloseChanged closeChanged);

  SharePriceCache& cache() { return m_cache; }

  enum class CacheUse { Answer, Skip };
  double closeOf(const String& code, const Date& day, bool upTo, CacheUse use);
  double cachedPrice(const String& code, const Date& day, int column);
  std::optional<double> cachedClose(const String& code, const Date& day);
  SharePriceCache::Rows cachedRows(const String& code, const Date& first, const Date& last);
  bool isBad(const String& code) { return m_cache.shareOrEmpty(code).isBad; }

  bool hasAnsweredFor(const String& code, const Date& day);
  /// True when a close is another one now.
  bool setTypedPrice(const String& code, const Date& day, double close);
  SharePriceCache::Closes keepRecent(const String& code, const HistoryRange& range,
                                     const SharePriceCache::Rows& rows);
  void refreshClosesFrom(const String& code, const Date& first);
  void completeHistory(const String& code, const Date& first, const Date& last);
  bool completeHistory(const std::vector<HistoryNeed>& needs, Progress* progress);

  // The requests for a day, for those who make them in their own way.

  /// The first of the days that is neither cached nor known to fail, as closeOf would ask for it.
  std::optional<Date> firstToFetch(const String& code, const Date& first, const Date& last);
  DayFetch beginFetch(const String& code, const Date& day, bool upTo);
  /// Keeps the page of the request that was due. True when another one is due.
  bool keepPage(DayFetch& fetch, const HistoryPage& page);
  /// True while the last page that was asked for met a failure of the network.
  bool hasNetworkFailed() const { return m_networkFailed; }
  /// The request that was due counts as failed, and nobody is asked about it.
  void noteCancelled(const DayFetch& fetch);

  void forgetFailures();
  void clearBad(const String& code);
  void clear();

private:
  void fetchDayVisibly(const String& code, const Date& day, bool upTo);
  void fetchDay(const String& code, const Date& day, bool upTo);
  void fetchMissingDays(const String& code, const Date& first, const Date& last);
  std::optional<Date> lastMissingDay(const String& code, const Date& first, const Date& last);
  bool isKnownToFail(const String& code, const Date& day) const;
  bool wantsAnotherTry(const String& code, const HistoryFailures::Failure& failure);
  SharePriceCache::Closes keepRows(const String& code, const SharePriceCache::Rows& rows,
                                   const HistoryRange& range);
  void tell(const String& code, const SharePriceCache::Closes& changed) const;

  SharePriceCache m_cache;
  const Connection& m_connection;
  FetchQuestions& m_questions;
  const CloseChanged m_closeChanged;
  HistoryFailures m_failures;
  bool m_networkFailed = false;
  /// The real day on which refreshClosesFrom last tried a code from a day on.
  std::map<std::pair<String, Date>, Date> m_refreshes;
  /// The ranges that the source has answered for in this run.
  std::map<String, std::vector<HistoryRange>> m_answered;
};

} // namespace Tallymoor
