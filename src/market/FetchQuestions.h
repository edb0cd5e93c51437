#pragma once
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "foundation/String.h"
#include "market/HistoryFailures.h"
#include <set>

namespace Tallymoor {

/// What the user is asked when the prices of a code can't be fetched: at most one question a code and a run,
/// which names the cause, and none for any code after a No, until forget is called. A source that answers
/// that it has nothing ("not found", a page without prices) is no failure of the network, so a retry is
/// offered for the latter alone. While a background pass runs, or without a window, nothing is asked.
///
/// GUI thread, under the big mutex.
class FetchQuestions {
public:
  enum class Answer { GiveUp, Retry, Delisted };

  /// The codes are asked about again: the user wants prices afresh, or has gone online.
  void forget() REQUIRES(bigMutex());
  /// The user has cancelled the fetch himself.
  void dontAsk(const String& code) REQUIRES(bigMutex()) { m_asked.insert(code); }
  /// After a history could not be fetched.
  Answer afterHistory(const String& code, const HistoryFailures::Failure& failure) REQUIRES(bigMutex());
  /// After a current price could not be fetched; true for another try.
  bool wantsQuoteAgain(const String& code, const HTTPException& failure) REQUIRES(bigMutex());

  /// True when a question may be asked at all.
  static bool mayAsk();
  /// Tells in the status line what is fetched, where the user may be told anything.
  static void showStatus(const String& text);

private:
  bool ask(const String& code, const String& question) REQUIRES(bigMutex());
  Answer askWhetherDelisted(const String& code, const String& cause) REQUIRES(bigMutex());

  std::set<String> m_asked GUARDED_BY(bigMutex());
  bool m_quiet GUARDED_BY(bigMutex()) = false; ///< since the user said No
};

} // namespace Tallymoor
