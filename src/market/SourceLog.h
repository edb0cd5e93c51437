#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "market/SourceAnswer.h"
#include "market/SourceFailure.h"
#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace Tallymoor {

/// What the sources have told of one code in this run.
struct ToldOfCode {
  String source;   ///< that answered last; empty when none has
  String currency; ///< of its answer; empty when it tells none
  std::optional<AnsweredPrice> price;
  std::map<Date, double> dividends;  ///< cash a share, as AnsweredHistory has them
  std::map<Date, double> splits;     ///< shares that one became
  std::vector<SourceReason> reasons; ///< of the sources before it in the last request, in their order
};

/// What became of the requests to sources in this run: by code, which source answered and why each earlier
/// one did not; by source, its last failure, whether it rests, and how often it was asked today. Any thread.
class SourceLog {
public:
  using Clock = std::chrono::steady_clock;
  static constexpr int REFUSALS_BEFORE_REST = 5;
  static constexpr std::chrono::minutes REST{15};
  /// For so long a price of a source with a daily limit is not asked for again.
  static constexpr std::chrono::hours FRESH{4};

  /// Tests choose the time.
  explicit SourceLog(std::function<Clock::time_point()> now = Clock::now) : m_now(std::move(now)) {}
  /// The requests of the day to sources with a daily limit are read from the file, and written to it, so that
  /// they outlive the program.
  explicit SourceLog(const String& requestsFile) : m_now(Clock::now), m_requestsFile(requestsFile) {}

  void noteAnswer(const String& code, const String& source, std::vector<SourceReason> earlier,
                  const AnsweredPrice& price);
  void noteAnswer(const String& code, const String& source, std::vector<SourceReason> earlier,
                  const AnsweredHistory& history);
  void noteNoAnswer(const String& code, std::vector<SourceReason> reasons);

  /// A wrong code is remembered. A source that refuses or wants to rest five times in a row, as when its
  /// limit is used up, rests for a quarter of an hour. Failures of the network are its host's and are not
  /// counted.
  void noteFailure(const String& code, const SourceReason& reason);
  /// Counts a request, which one that does not reach the source is taken out of again. Why the source must
  /// not be asked for the code now, if so; with a daily limit of 0 there is none.
  std::optional<SourceReason> beginRequest(const String& code, const String& source, std::size_t perDay);

  /// The same for a trial, which the user wants whatever was told before: only the limit of the day counts.
  std::optional<SourceReason> beginTrialRequest(const String& source, std::size_t perDay);

  /// The price that this source told for the code a short time ago, if it did.
  std::optional<AnsweredPrice> freshPrice(const String& code, const String& source) const;

  ToldOfCode toldOf(const String& code) const;
  /// The dividends that were told of all codes.
  std::map<String, std::map<Date, double>> dividends() const;
  /// The days of the splits that were told, with their codes.
  std::vector<std::pair<String, Date>> splitDays() const;
  /// The shares that one became by the splits of the days, both included; nothing if none was told.
  std::optional<double> splitBetween(const String& code, const Date& first, const Date& last) const;
  /// The last failure of a source in this run, with the code for which it failed.
  struct Failure {
    String code;
    SourceReason reason;
  };
  /// What a source did in this run.
  struct Summary {
    std::optional<Failure> lastFailure;
    String lastAnswered;      ///< the code for which it answered last; empty if it has failed since
    std::size_t requests = 0; ///< of today
  };
  Summary summaryOf(const String& source) const;

  /// Wrong codes and rests end: the user wants all to be tried again, or has changed the source.
  void forgetFailures();

private:
  struct OfSource {
    std::set<String> wrongCodes;
    int refusalsInARow = 0;
    std::optional<Clock::time_point> restsUntil;
    Date day{0u}; ///< on which the requests were counted
    std::size_t requests = 0;
    bool hasDailyLimit = false;
    std::optional<Failure> lastFailure;
    String lastAnswered;
  };

  struct Priced {
    String source;
    AnsweredPrice price;
    Clock::time_point at;
  };

  ToldOfCode& answered(const String& code, const String& source, std::vector<SourceReason> earlier,
                       const String& currency);

  std::optional<SourceReason> count(OfSource& known, const String& source, std::size_t perDay);
  void readRequests();
  void writeRequests() const;

  const std::function<Clock::time_point()> m_now;
  const String m_requestsFile; ///< empty for none
  bool m_areRequestsRead = false;
  std::atomic<bool> m_hasSplits = false; ///< a look without the mutex, since few codes have any
  mutable std::mutex m_mutex;            ///< guards the maps
  std::map<String, ToldOfCode> m_codes;
  std::map<String, OfSource> m_sources;
  std::map<String, Priced> m_prices; ///< the last one of each code
};

} // namespace Tallymoor
