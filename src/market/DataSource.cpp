#include "market/DataSource.h"
#include "foundation/Exception.h"
#include "market/HTTPClient.h"
#include "market/HistoryPage.h"
#include "market/HistoryTable.h"
#include "market/LocatorSet.h"
#include "market/SearchTable.h"
#include "market/URLResolver.h"
#include "pages/HTMLTable.h"
#include "pages/HTMLTag.h"
#include "pages/HTMLTagLocator.h"
#include "pages/PageFigure.h"
#include <utility>

namespace Tallymoor {

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

DataSource::DataSource(std::shared_ptr<HTTPClient> client, const LocatorSet& locators)
    : m_client(std::move(client)), m_currentPrice(locators.currentPrice()),
      m_codeSearch(locators.codeSearch()), m_historicalPrices(locators.historicalPrices()) {}

HTMLPage DataSource::fetch(const XMLElement& locator, const URLVariablesProvider& variables,
                           const std::stop_token& stop) const {
  const URL url = URLResolver(&urlLocator(locator))(variables);
  return HTMLParser::Parse(m_client->getPage(url, stop));
}

double DataSource::currentPrice(const String& code, const std::stop_token& stop) const {
  const HTMLPage page = fetch(m_currentPrice, URLVariables(code, true, true), stop);
  return readCurrentPrice(m_currentPrice, page.get());
}

double DataSource::readCurrentPrice(const XMLCurrentPrice& source, const HTMLTag* page) {
  const auto& locator = static_cast<const XMLTagLocator&>(source.subElement(u"TagLocator"));
  const HTMLTag* tag = HTMLTagLocator(&locator)(page);
  if (locator.format() != VALUE_FORMAT_FLOAT)
    throw HTMLException(u"TallymoorInternet::CurrentPrice - locator format not a double!");
  // A stock that was not traded has "N/A" or nothing there.
  return holdsDigits(tag->text()) ? requireFigure(tag->text()) : 0.0;
}

URLVariables DataSource::historyVariables(const String& code, const HistoryRange& range) {
  const auto text = String::fromLong;
  return URLVariables(code, true, true, text(range.start.day()), text(range.start.month() - 1),
                      text(range.start.year()), text(range.end.day()), text(range.end.month() - 1),
                      text(range.end.year()));
}

DataSource::Rows DataSource::history(const String& code, const HistoryRange& range,
                                     const std::stop_token& stop) const {
  const HTMLPage page = fetch(m_historicalPrices, historyVariables(code, range), stop);
  const HTMLTable table = readTable(m_historicalPrices, page);
  return HistoryTable(table).rows();
}

HistoryPage DataSource::historyPage(const String& code, const HistoryRange& range,
                                    const std::stop_token& stop) const {
  HistoryPage page;
  try {
    page.rows = history(code, range, stop);
  } catch (const Exception&) {
    page.failure = std::current_exception();
  }
  return page;
}

void DataSource::search(const String& text, bool isShare, bool usOnly, std::vector<CodeSearchResult>& results,
                        const std::stop_token& stop) const {
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
