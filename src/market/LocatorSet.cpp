#include "market/LocatorSet.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"

namespace Tallymoor {

namespace {

/// The document's first locator whose domain is the active one, or null.
template <class Locator>
const Locator* activeLocator(const XMLElement& document, std::u16string_view referenceName) {
  const String& active = document.attribute(u"active");
  const std::size_t count = document.numSubElements(referenceName);
  for (std::size_t i = 0; i < count; ++i) {
    const XMLElement& locator = document.subElement(referenceName, i);
    if (locator.attribute(u"domain") == active)
      return static_cast<const Locator*>(&locator);
  }
  return nullptr;
}

void require(const void* locator, const String& kind) {
  if (!locator)
    throw HTMLException(u"TallymoorInternet::TallymoorInternet - failed to find a " + kind);
}

} // namespace

LocatorSet::LocatorSet(const String& configDirectory) {
  m_currentPriceDocument.decode(configDirectory + CURRENT_PRICE_LOCATORS_FILE);
  m_codeSearchDocument.decode(configDirectory + CODE_SEARCH_LOCATORS_FILE);
  m_historicalPricesDocument.decode(configDirectory + HISTORICAL_PRICE_LOCATORS_FILE);
  m_currentPrice = activeLocator<XMLCurrentPrice>(m_currentPriceDocument, u"CurrentPrices");
  m_codeSearch = activeLocator<XMLCodeSearch>(m_codeSearchDocument, u"CodeSearchs");
  m_historicalPrices = activeLocator<XMLHistoricalPrices>(m_historicalPricesDocument, u"HistPrices");
  require(m_codeSearch, u"code search locator");
  require(m_currentPrice, u"price locator");
  require(m_historicalPrices, u"historical prices locator");
}

bool LocatorSet::isSample() const {
  const String sample = u"sample";
  return m_currentPrice->attribute(u"domain") == sample || m_historicalPrices->attribute(u"domain") == sample;
}

} // namespace Tallymoor
