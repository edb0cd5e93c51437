#pragma once
#include "foundation/String.h"
#include "market/CodeSearchResult.h"
#include "market/DataSource.h"
#include "market/FetchQueue.h"
#include "market/HistoryRange.h"
#include <cstddef>
#include <deque>
#include <exception>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <vector>

namespace Tallymoor {

class Connection;
class PriceHistory;
class PriceUpdater;
class PricesObserver;

/// One pass of the updater over its codes: their current prices, and recent closes where these are due or
/// missing. It works on copies of the codes and observers, taken at its start.
///
/// Several codes are fetched at once without any lock, and their prices are kept and told in the order of the
/// codes. All but the fetches runs in short stretches under the big mutex with inBackgroundPass set; before
/// each, again with the mutex in hand, the pass looks whether it has been told to stop.
class PricePass {
public:
  /// What is referred to is not owned.
  PricePass(Connection& connection, PriceHistory& history, PriceUpdater& updater, std::stop_token stop);

  struct Scope {
    bool newAlone = false;         ///< only the codes that were added since the last pass
    bool isHistoryDue = false;     ///< recent closes are refreshed, too
    bool hasNetworkFailed = false; ///< one request at a time tries whether it is back
  };
  /// On a thread that does not hold the big mutex. Throws Exception when the program is offline; what fails
  /// for a code otherwise leaves the others alone.
  void run(const Scope& scope);

  /// True when the last answer was a failure of the network.
  bool hasNetworkFailed() const { return m_networkFailed; }
  /// The code that failed first with its reason, and how many others failed; empty if none did.
  String failureText() const;

private:
  using Observers = std::vector<PricesObserver*>;
  enum class AskForHistory { Never, AfterPrice, Always };
  struct Request {
    String code;
    HistoryRange recent;
    AskForHistory history = AskForHistory::Never;
    bool wantsName = false;
    std::exception_ptr failure; ///< nothing is fetched then
  };
  struct Answer {
    AnsweredPrice price;
    std::exception_ptr priceFailure;
    std::vector<CodeSearchResult> names;
    bool hasHistory = false; ///< it was asked for
    DataSource::Rows history;
    std::exception_ptr historyFailure;
  };

  void beginFetches();
  void begin(const std::shared_ptr<const DataSource>& source, const String& code);
  Request requestFor(const String& code);
  AskForHistory askForHistory(const String& code);
  static Answer fetch(const DataSource& source, const Request& request, const std::stop_token& stop);
  void keep(const Request& request, const Answer& answer);
  void keepPrice(const Request& request, const Answer& answer);
  void keepHistory(const Request& request, const Answer& answer);
  template <class Tell>
  void tellObservers(Tell tell);
  template <class Step>
  void attempt(const String& code, Step step);

  Connection& m_connection;
  PriceHistory& m_history;
  PriceUpdater& m_updater;
  const std::stop_token m_stop;
  bool m_isHistoryDue = false;
  bool m_networkFailed = false;
  std::vector<String> m_codes;
  std::size_t m_begun = 0; ///< of the codes
  Observers m_observers;
  std::deque<String> m_underWay; ///< codes in the order of asking
  String m_firstFailure;         ///< code and reason
  std::set<String> m_failed;
  FetchQueue m_fetches; ///< ends first, since it refers to the others
};

} // namespace Tallymoor
