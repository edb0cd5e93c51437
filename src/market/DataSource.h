#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "market/CachedShare.h"
#include "market/CodeSearchResult.h"
#include "market/HistoryRange.h"
#include "market/SourceAnswer.h"
#include "market/SourceChoice.h"
#include <map>
#include <memory>
#include <vector>

namespace Tallymoor {

class HTTPClient;
struct HistoryPage;
class LocatorSet;

/// Prices from the sources that the user has chosen: for each code from the first one in their order that
/// serves it and answers. Holds copies, so that it can be made under the big mutex and used without it, while
/// the gateway goes offline or the sources change.
///
/// A fetch ends with a failure when a stop is requested.
///
/// Of the locators alone all failures are those of LocatorPrices. Otherwise they are SourceException, which
/// is told of all sources that were asked, and never ends the requests for other codes.
class DataSource {
public:
  /// Past prices with what the source told of them.
  struct Rows : std::map<Date, ShareValue> {
    String currency;                   ///< empty if it told none
    std::map<Date, ShareValue> future; ///< of days to come
  };

  /// The locators as the only source.
  DataSource(std::shared_ptr<HTTPClient> client, const LocatorSet& locators);
  explicit DataSource(SourceChoice choice);

  /// With a price of 0 when the source has none now.
  AnsweredPrice currentPrice(const String& code, const std::stop_token& stop = {}) const;
  /// The days of the range as the source has them, and perhaps days before it.
  Rows history(const String& code, const HistoryRange& range, const std::stop_token& stop = {}) const;
  /// The same with a failure as part of the result; throws nothing that is an Exception.
  HistoryPage historyPage(const String& code, const HistoryRange& range, const std::stop_token& stop) const;
  /// True if the past prices of the code are known to be others than those given last, as when a file has
  /// changed.
  bool hasNewHistory(const String& code) const;
  /// Adds what the first source finds that finds anything. The name of a code is not asked of a source with a
  /// daily limit, which is for prices.
  enum class SearchFor { Text, NameOfCode };
  void search(const String& text, bool isShare, bool usOnly, std::vector<CodeSearchResult>& results,
              const std::stop_token& stop = {}, SearchFor purpose = SearchFor::Text) const;

private:
  struct Candidate {
    const PriceProvider* source;
    String codeThere;
  };
  template <class Offers>
  std::vector<Candidate> candidatesFor(const String& code, Offers offers,
                                       std::vector<SourceReason>& reasons) const;
  template <class Offers, class Known, class Ask>
  auto firstAnswer(const String& code, const std::stop_token& stop, Offers offers, Known known,
                   Ask ask) const;
  bool isLocatorsAlone() const;

  SourceChoice m_choice;
};

} // namespace Tallymoor
