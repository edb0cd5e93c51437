#include "market/SearchTable.h"
#include "pages/HTMLTable.h"
#include "pages/PageFigure.h"
#include <array>
#include <utility>

namespace Tallymoor {

namespace {

const String NO_MARKET = u"N/A";
const String NOT_TRADABLE_PREFIX = u"E:";

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

} // namespace

SearchTable::SearchTable(const HTMLTable& table)
    : m_table(table), m_code(table.columnByType(COLUMN_TYPE_CODE)),
      m_name(table.columnByType(COLUMN_TYPE_STOCK_NAME)),
      m_market(table.columnByType(COLUMN_TYPE_MARKET_NAME)) {}

SearchTable::Row SearchTable::row(std::size_t index) const {
  Row row{Reading::Read, {}};
  CodeSearchResult& result = row.result;
  result.code = m_table.cellValue(index, m_code);
  result.name = withCharacters(m_table.cellValue(index, m_name));
  result.market = marketOf(result.code, m_table.cellValue(index, m_market));
  if (result.code.empty())
    row.reading = Reading::NoCode;
  else if (result.code.startsWith(NOT_TRADABLE_PREFIX))
    row.reading = Reading::NotTradable;
  return row;
}

} // namespace Tallymoor
