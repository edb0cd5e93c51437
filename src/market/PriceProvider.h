#pragma once
#include "foundation/String.h"
#include "market/CodeSearchResult.h"
#include "market/HistoryRange.h"
#include "market/SourceAnswer.h"
#include <cstddef>
#include <optional>
#include <stop_token>
#include <vector>

namespace Tallymoor {

/// One source of prices. Holds copies of all that it needs, so that it is made under the big mutex and used
/// without it, by several threads at once.
///
/// What it does not offer must not be asked for. A fetch ends with a failure when a stop is requested. All
/// failures are Exception; faultOf says what one means.
class PriceProvider {
public:
  virtual ~PriceProvider();

  /// What the user sees, different for each source.
  virtual const String& name() const = 0;
  /// True if the source may have prices of the code.
  virtual bool serves(const String& code) const = 0;
  virtual bool offersCurrentPrice() const { return true; }
  virtual bool offersHistory() const { return true; }
  virtual bool offersSearch() const { return true; }
  /// The most requests that it allows; 0 for any number.
  virtual std::size_t requestsADay() const { return 0; }
  /// True if it knows, without asking anybody, that its past prices are not those that it gave last.
  virtual bool hasNewHistory(const String&) const { return false; }

  /// Nothing when the source has no price now.
  virtual std::optional<AnsweredPrice> currentPrice(const String& code,
                                                    const std::stop_token& stop) const = 0;
  /// The days up to the end of the range; those before its start may be among them, where the source sends
  /// more than it is asked for.
  virtual AnsweredHistory history(const String& code, const HistoryRange& range,
                                  const std::stop_token& stop) const = 0;
  /// Adds what is found, page by page, so that a failure leaves what came before.
  virtual void search(const String& text, bool isShare, bool usOnly, std::vector<CodeSearchResult>& results,
                      const std::stop_token& stop) const = 0;
};

} // namespace Tallymoor
