#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "market/HistoryRange.h"
#include <exception>
#include <map>
#include <optional>
#include <vector>

namespace Tallymoor {

/// What the data source could not give in this run, by code and days, so that nobody asks it again for every
/// day and figure. There are two kinds. A request failed: then all days of its range have failed. Or the
/// source answered and has no price for some days, as before a stock was listed: those are absent. Guarded by
/// the big mutex, which its callers hold.
class HistoryFailures {
public:
  struct Failure {
    HistoryRange range;
    std::exception_ptr what;
  };

  void noteFailure(const String& code, const HistoryRange& range, std::exception_ptr what);
  void noteAbsent(const String& code, const HistoryRange& days);

  /// The failure of a request for a range with this day; null when there was none.
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

private:
  struct OfCode {
    std::vector<Failure> failures;
    std::vector<HistoryRange> absent; ///< neither overlapping nor side by side
    std::optional<Date> completionEnd;
  };

  const OfCode* find(const String& code) const;

  std::map<String, OfCode> m_codes;
};

} // namespace Tallymoor
