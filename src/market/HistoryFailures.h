#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "market/HistoryRange.h"
#include <cstdint>
#include <exception>
#include <map>
#include <optional>
#include <vector>

namespace Tallymoor {

/// The prices that the data source could not give in this run, by code and day, so that they are not
/// requested again for each figure. If a request failed, all days of its range have failed. If the source
/// answered without a price for some days, for example before a stock was listed, those days are absent.
/// Callers hold the big mutex.
class HistoryFailures {
public:
  struct Failure {
    HistoryRange range;
    std::exception_ptr what;
  };

  void noteFailure(const String& code, const HistoryRange& range, std::exception_ptr what);
  void noteAbsent(const String& code, const HistoryRange& days);

  /// The failure of a request whose range contains this day; null if there is none.
  const Failure* failureOn(const String& code, const Date& day) const;
  /// The same, or that of a request for much the same days as this range: days that are asked for one after
  /// the other have ranges that hardly differ.
  const Failure* failureOf(const String& code, const Date& day, const HistoryRange& request) const;
  bool isAbsent(const String& code, const Date& day) const;

  /// A page of a completion, up to the day, failed or was empty: most likely so are those before it. A guess:
  /// good enough to leave figures empty, and no reason to refuse a price.
  void endCompletionAt(const String& code, const Date& day);
  bool isBeyondCompletion(const String& code, const Date& day) const;

  void forget();
  void forget(const String& code);
  /// Before another request for the day: its outcome counts from now on.
  void forgetFailuresOn(const String& code, const Date& day);

  /// Another number after each of these changes.
  std::uint64_t changeStamp() const { return m_changeStamp; }

private:
  struct OfCode {
    std::vector<Failure> failures;
    std::vector<HistoryRange> absent; ///< neither overlapping nor side by side
    std::optional<Date> completionEnd;
  };

  const OfCode* find(const String& code) const;

  std::map<String, OfCode> m_codes;
  std::uint64_t m_changeStamp = 0;
};

} // namespace Tallymoor
