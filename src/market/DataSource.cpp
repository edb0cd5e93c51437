#include "market/DataSource.h"
#include "foundation/Exception.h"
#include "market/HTMLTable.h"
#include "market/HTMLTag.h"
#include "market/HTMLTagLocator.h"
#include "market/HTTPClient.h"
#include "market/LocatorSet.h"
#include "market/URLResolver.h"
#include "market/URLVariables.h"
#include <array>
#include <utility>

namespace Tallymoor {

namespace {

const Date FIRST_BELIEVABLE_DAY(1900, 1, 1);
const String NO_MARKET = u"N/A";
const String NOT_TRADABLE_PREFIX = u"E:";

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

URLVariables variablesOf(const String& code, const HistoryRange& range) {
  const auto text = String::fromLong;
  return URLVariables(code, true, true, text(range.start.day()), text(range.start.month() - 1),
                      text(range.start.year()), text(range.end.day()), text(range.end.month() - 1),
                      text(range.end.year()));
}

/// Some sources leave the market out where the code tells it.
String marketOf(const String& code, const String& market) {
  static const std::array<std::pair<String, String>, 6> MARKETS{{{u".AX", u"Australia"},
                                                                 {u".VX", u"Austria"},
                                                                 {u".MC", u"Spain"},
                                                                 {u".SI", u"Singapore"},
                                                                 {u".TA", u"Israel"},
                                                                 {u".SW", u"Switzerland"}}};
  if (market != NO_MARKET)
    return market;
  for (const auto& [mark, country] : MARKETS)
    if (code.contains(mark))
      return country;
  return market;
}

/// Reads the rows of a table of past prices.
class HistoryReader {
public:
  /// Throws HTMLException for a table without one of the columns.
  explicit HistoryReader(const HTMLTable& table)
      : m_table(table), m_date(table.columnByType(COLUMN_TYPE_DATE)),
        m_high(table.columnByType(COLUMN_TYPE_HIGH)), m_low(table.columnByType(COLUMN_TYPE_LOW)),
        m_volume(table.columnByType(COLUMN_TYPE_VOLUME)), m_close(table.columnByType(COLUMN_TYPE_CLOSE)) {}

  DataSource::Rows rows() const {
    DataSource::Rows rows;
    // The clock of the exchange may be a day ahead of ours.
    const Date lastBelievableDay = Date::realToday().plusDays(1);
    for (std::size_t row = 0; row < m_table.numRows(); ++row) {
      const String dateText = m_table.cellValue(row, m_date);
      const String closeText = m_table.cellValue(row, m_close);
      if (dateText.empty() || closeText.empty())
        continue;
      const Date day(dateText, DATE_DISPLAY_MIDDATE1);
      if (day >= FIRST_BELIEVABLE_DAY && day <= lastBelievableDay)
        rows.insert_or_assign(day, valueOf(row, closeText));
    }
    return rows;
  }

private:
  ShareValue valueOf(std::size_t row, const String& closeText) const {
    ShareValue value;
    value.high = m_table.cellValue(row, m_high).toDouble();
    value.low = m_table.cellValue(row, m_low).toDouble();
    value.close = closeText.toDouble();
    value.volume = m_table.cellValue(row, m_volume).toLong();
    return value;
  }

  const HTMLTable& m_table;
  std::size_t m_date;
  std::size_t m_high;
  std::size_t m_low;
  std::size_t m_volume;
  std::size_t m_close;
};

} // namespace

DataSource::DataSource(std::shared_ptr<HTTPClient> client, const LocatorSet& locators)
    : m_client(std::move(client)), m_currentPrice(locators.currentPrice()),
      m_codeSearch(locators.codeSearch()), m_historicalPrices(locators.historicalPrices()) {}

HTMLPage DataSource::fetch(const XMLElement& locator, const URLVariablesProvider& variables) const {
  return HTMLParser::Parse(m_client->getPage(URLResolver(&urlLocator(locator))(variables)));
}

double DataSource::currentPrice(const String& code) const {
  const HTMLPage page = fetch(m_currentPrice, URLVariables(code, true, true));
  const auto& locator = static_cast<const XMLTagLocator&>(m_currentPrice.subElement(u"TagLocator"));
  const HTMLTag* tag = HTMLTagLocator(&locator)(page.get());
  if (locator.format() != VALUE_FORMAT_FLOAT)
    throw HTMLException(u"TallymoorInternet::CurrentPrice - locator format not a double!");
  return tag->text().toDouble();
}

DataSource::Rows DataSource::history(const String& code, const HistoryRange& range) const {
  const HTMLPage page = fetch(m_historicalPrices, variablesOf(code, range));
  const HTMLTable table = readTable(m_historicalPrices, page);
  return HistoryReader(table).rows();
}

void DataSource::search(const String& text, bool isShare, bool usOnly,
                        std::vector<CodeSearchResult>& results) const {
  const URLVariables variables(text, isShare, usOnly);
  const std::size_t numDetails = m_codeSearch.numSubElements(u"Details");
  for (std::size_t i = 0; i < numDetails; ++i) {
    const XMLElement& detail = m_codeSearch.subElement(u"Details", i);
    const HTMLTable table = readTable(detail, fetch(detail, variables));
    for (std::size_t row = 0; row < table.numRows(); ++row) {
      CodeSearchResult result;
      result.code = table.cellValue(row, table.columnByType(COLUMN_TYPE_CODE));
      result.name = table.cellValue(row, table.columnByType(COLUMN_TYPE_STOCK_NAME));
      result.market =
          marketOf(result.code, table.cellValue(row, table.columnByType(COLUMN_TYPE_MARKET_NAME)));
      if (!result.code.empty() && !result.code.startsWith(NOT_TRADABLE_PREFIX))
        results.push_back(std::move(result));
    }
  }
}

} // namespace Tallymoor
