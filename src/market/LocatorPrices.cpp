#include "market/LocatorPrices.h"
#include "foundation/Exception.h"
#include "market/HTTPClient.h"
#include "market/HistoryTable.h"
#include "market/LocatorSet.h"
#include "market/PagedHistory.h"
#include "market/SearchTable.h"
#include "market/URLResolver.h"
#include "pages/HTMLTable.h"
#include "pages/HTMLTag.h"
#include "pages/HTMLTagLocator.h"
#include "pages/PageFigure.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

const String LocatorPrices::NAME = u"locators";

namespace {

const XMLURLLocator& urlLocator(const XMLElement& locator) {
  return static_cast<const XMLURLLocator&>(locator.subElement(u"URLLocator"));
}

const XMLTableLocator& tableLocator(const XMLElement& locator) {
  return static_cast<const XMLTableLocator&>(locator.subElement(u"TableLocator"));
}

HTMLTable readTable(const XMLElement& locator, const HTMLPage& page) {
  HTMLTable table(&tableLocator(locator));
  table.fillFrom(page.get());
  return table;
}

} // namespace

LocatorPrices::LocatorPrices(std::shared_ptr<HTTPClient> client, const LocatorSet& locators)
    : m_client(std::move(client)), m_currentPrice(locators.currentPrice()),
      m_codeSearch(locators.codeSearch()), m_historicalPrices(locators.historicalPrices()) {}

HTMLPage LocatorPrices::fetch(const XMLElement& locator, const URLVariablesProvider& variables,
                              const std::stop_token& stop) const {
  const URL url = URLResolver(&urlLocator(locator))(variables);
  return HTMLParser::Parse(m_client->getPage(url, stop));
}

std::optional<AnsweredPrice> LocatorPrices::currentPrice(const String& code,
                                                         const std::stop_token& stop) const {
  const HTMLPage page = fetch(m_currentPrice, URLVariables(code, true, true), stop);
  const double price = readCurrentPrice(m_currentPrice, page.get());
  return price == 0.0 ? std::nullopt : std::optional(AnsweredPrice{price, std::nullopt, {}});
}

double LocatorPrices::readCurrentPrice(const XMLCurrentPrice& source, const HTMLTag* page) {
  const auto& locator = static_cast<const XMLTagLocator&>(source.subElement(u"TagLocator"));
  const HTMLTag* tag = HTMLTagLocator(&locator)(page);
  if (locator.format() != VALUE_FORMAT_FLOAT)
    throw HTMLException(u"TallymoorInternet::CurrentPrice - locator format not a double!");
  // A stock that was not traded has "N/A" or nothing there.
  return holdsDigits(tag->text()) ? requireFigure(tag->text()) : 0.0;
}

URLVariables LocatorPrices::historyVariables(const String& code, const HistoryRange& range) {
  const auto text = String::fromLong;
  return URLVariables(code, true, true, text(range.start.day()), text(range.start.month() - 1),
                      text(range.start.year()), text(range.end.day()), text(range.end.month() - 1),
                      text(range.end.year()));
}

AnsweredHistory LocatorPrices::history(const String& code, const HistoryRange& range,
                                       const std::stop_token& stop) const {
  return pagedHistory(range, HistoryRange::daysOfPage(m_historicalPrices.maxEntries()),
                      [&](const HistoryRange& days) {
                        const HTMLPage page = fetch(m_historicalPrices, historyVariables(code, days), stop);
                        return HistoryTable(readTable(m_historicalPrices, page)).history();
                      });
}

void LocatorPrices::search(const String& text, bool isShare, bool usOnly,
                           std::vector<CodeSearchResult>& results, const std::stop_token& stop) const {
  const URLVariables variables(text, isShare, usOnly);
  const std::size_t numDetails = m_codeSearch.numSubElements(u"Details");
  for (std::size_t i = 0; i < numDetails; ++i) {
    const XMLElement& detail = m_codeSearch.subElement(u"Details", i);
    const HTMLTable table = readTable(detail, fetch(detail, variables, stop));
    const SearchTable found(table);
    for (std::size_t row = 0; row < table.numRows(); ++row) {
      SearchTable::Row read = found.row(row);
      if (read.reading == SearchTable::Reading::Read)
        results.push_back(std::move(read.result));
    }
  }
}

} // namespace Tallymoor
