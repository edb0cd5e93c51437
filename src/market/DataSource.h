#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "market/CachedShare.h"
#include "market/CodeSearchResult.h"
#include "market/HTTPClient.h"
#include "market/HistoryRange.h"
#include "market/URLVariables.h"
#include "pages/HTMLParser.h"
#include "xml/LocatorDocuments.h"
#include <map>
#include <memory>
#include <vector>

namespace Tallymoor {

struct HistoryPage;
class LocatorSet;

/// Fetches and reads the pages of the active data source. Holds the client and copies of the locators, so
/// that it can be made under the big mutex and used without it, while the gateway goes offline or takes new
/// locators.
///
/// A fetch ends with a failure when a stop is requested.
///
/// All operations throw HTTPException when the network fails, HTMLException when the page is not what its
/// locator says, and Exception for a cell that can't be read.
class DataSource {
public:
  using Rows = std::map<Date, ShareValue>;

  DataSource(std::shared_ptr<HTTPClient> client, const LocatorSet& locators);

  /// 0 when the source has no price now.
  double currentPrice(const String& code, const std::stop_token& stop = {}) const;
  /// The days of the range as the source has them; dividend and split rows, and days that can't be right, are
  /// left out.
  Rows history(const String& code, const HistoryRange& range, const std::stop_token& stop = {}) const;
  /// The same with a failure as part of the result; throws nothing that is an Exception.
  HistoryPage historyPage(const String& code, const HistoryRange& range, const std::stop_token& stop) const;
  /// Adds what all search pages found, page by page, so that a failure leaves what came before.
  void search(const String& text, bool isShare, bool usOnly, std::vector<CodeSearchResult>& results,
              const std::stop_token& stop = {}) const;

  // --- The steps of the above, for trying a document on a saved page

  /// The price on a page's "html" tag; 0 where the page has no number in its place, as "N/A" or "-". Throws
  /// HTMLException also where the document does not say "Float".
  static double readCurrentPrice(const XMLCurrentPrice& source, const HTMLTag* page);
  /// What the address of a page of past prices is made from.
  static URLVariables historyVariables(const String& code, const HistoryRange& range);

private:
  HTMLPage fetch(const XMLElement& locator, const URLVariablesProvider& variables,
                 const std::stop_token& stop) const;

  std::shared_ptr<HTTPClient> m_client;
  XMLCurrentPrice m_currentPrice;
  XMLCodeSearch m_codeSearch;
  XMLHistoricalPrices m_historicalPrices;
};

} // namespace Tallymoor
