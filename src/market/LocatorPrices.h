#pragma once
#include "market/HTTPClient.h"
#include "market/PriceProvider.h"
#include "market/URLVariables.h"
#include "pages/HTMLParser.h"
#include "xml/LocatorDocuments.h"
#include <memory>

namespace Tallymoor {

class LocatorSet;

/// The pages that the three locator documents lead to, as one source, which serves every code. Holds copies
/// of the locators.
///
/// Throws HTTPException when the network fails, HTMLException when a page is not what its locator says, and
/// Exception for a cell that can't be read.
class LocatorPrices : public PriceProvider {
public:
  static const String NAME;

  LocatorPrices(std::shared_ptr<HTTPClient> client, const LocatorSet& locators);

  const String& name() const override { return NAME; }
  bool serves(const String&) const override { return true; }
  std::optional<AnsweredPrice> currentPrice(const String& code, const std::stop_token& stop) const override;
  /// Dividend and split rows, and days that can't be right, are left out.
  AnsweredHistory history(const String& code, const HistoryRange& range,
                          const std::stop_token& stop) const override;
  void search(const String& text, bool isShare, bool usOnly, std::vector<CodeSearchResult>& results,
              const std::stop_token& stop) const override;

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
