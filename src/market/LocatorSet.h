#pragma once
#include "foundation/String.h"
#include "xml/LocatorDocuments.h"

namespace Tallymoor {

/// The three locator documents, and of each the one locator that it names as active: all that is known of
/// where prices live on the web. Never changes once it is read.
class LocatorSet {
public:
  /// Reads the documents from a folder with a trailing separator. Throws XMLException for one that can't be
  /// read, then HTMLException when one names no locator that it holds.
  explicit LocatorSet(const String& configDirectory);
  LocatorSet(const LocatorSet&) = delete;
  LocatorSet& operator=(const LocatorSet&) = delete;

  /// True if a page of the sample data service is active: its prices are made up.
  bool isSample() const;

  const XMLCurrentPrice& currentPrice() const { return *m_currentPrice; }
  const XMLCodeSearch& codeSearch() const { return *m_codeSearch; }
  const XMLHistoricalPrices& historicalPrices() const { return *m_historicalPrices; }

private:
  XMLCurrentPriceLocators m_currentPriceDocument;
  XMLCodeSearchLocators m_codeSearchDocument;
  XMLHistoricalPricesLocators m_historicalPricesDocument;
  const XMLCurrentPrice* m_currentPrice;
  const XMLCodeSearch* m_codeSearch;
  const XMLHistoricalPrices* m_historicalPrices;
};

} // namespace Tallymoor
