#include "workbench/TableCommand.h"
#include "foundation/Date.h"
#include "workbench/ColumnTypes.h"
#include "workbench/LocatorXml.h"
#include "workbench/NumberRemark.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include "workbench/WebPage.h"
#include "workbench/WorkbenchFailure.h"
#include <algorithm>

namespace Tallymoor {

namespace {

using Types = std::vector<ColumnType>;

const Types PRICES{COLUMN_TYPE_DATE,  COLUMN_TYPE_OPEN,   COLUMN_TYPE_HIGH,     COLUMN_TYPE_LOW,
                   COLUMN_TYPE_CLOSE, COLUMN_TYPE_VOLUME, COLUMN_TYPE_ADJ_CLOSE};
const Types CODES{COLUMN_TYPE_CODE, COLUMN_TYPE_STOCK_NAME, COLUMN_TYPE_MARKET_NAME};

bool isDate(const String& text) {
  try {
    static_cast<void>(Date(text, DATE_DISPLAY_MIDDATE1));
    return true;
  } catch (const Exception&) {
    return false;
  }
}

/// The type is COLUMN_TYPE_NONE if the text names none.
ExampleCell asGiven(const String& text) {
  const std::size_t sign = text.find(u'=');
  const ColumnType type = sign == String::npos ? COLUMN_TYPE_NONE : columnTypeNamed(text.substr(0, sign));
  return {type, type == COLUMN_TYPE_NONE ? text : text.substr(sign + 1)};
}

[[noreturn]] void failForTypes() {
  throw WorkbenchFailure(WorkbenchFailure::WRONG_COMMAND,
                         u"the columns of the texts are unknown. Without types the texts must be\n"
                         u"  date open high low close volume [adjusted close]    or    code name market\n"
                         u"Otherwise give the type of each: Date=3-Mar-06 Close=1.52. The types are Date, "
                         u"Open, High, Low, Close,\n"
                         u"Volume, AdjClose, Code, StockName, MarketName.");
}

void setUsualTypes(std::vector<ExampleCell>& cells) {
  const bool arePrices = cells.size() >= 6 && cells.size() <= 7 && isDate(cells.front().text);
  if (!arePrices && cells.size() != CODES.size())
    failForTypes();
  for (std::size_t i = 0; i < cells.size(); ++i)
    cells[i].type = arePrices ? PRICES[i] : CODES[i];
}

bool isAmount(ColumnType type) {
  return type >= COLUMN_TYPE_OPEN && type <= COLUMN_TYPE_ADJ_CLOSE;
}

} // namespace

TableCommand::TableCommand(PlainOutput& out, const std::string& page, const std::vector<String>& texts)
    : m_out(out), m_page(page) {
  for (const String& text : texts)
    m_cells.push_back(asGiven(text));
  const auto untyped = std::count_if(m_cells.begin(), m_cells.end(),
                                     [](const ExampleCell& cell) { return cell.type == COLUMN_TYPE_NONE; });
  if (untyped == std::ssize(m_cells))
    setUsualTypes(m_cells);
  else if (untyped != 0)
    failForTypes();
  for (const ExampleCell& cell : m_cells)
    if (asShown(cell.text).empty())
      throw WorkbenchFailure(WorkbenchFailure::WRONG_COMMAND,
                             u"the text of " + columnTypeName(cell.type) +
                                 u" is empty; give a row in which every cell has a text");
}

bool TableCommand::run() {
  const WebPage page = WebPage::fromFile(m_page);
  page.show(m_out);
  const TableProposal proposal(page, m_cells);
  if (!proposal.locator()) {
    m_out.line(u"No TableLocator was found.");
    m_out.line(proposal.reason());
    return false;
  }
  m_out.line(u"This reads " + counted(proposal.numRows(), u"row", u"rows") + u"; the example is row " +
             numberText(proposal.exampleRow() + 1) + u".");
  m_out.line();
  writeTableLocator(m_out, *proposal.locator(), 2);
  m_out.line();
  if (proposal.numRows() == 1)
    m_out.line(
        u"Note: it reads only this row. If the page shows more rows, their tags are not its siblings.");
  showNotes();
  m_out.line(u"Replace the document's TableLocator with it, then test it:");
  m_out.line(u"tallymoor-locator check DOCUMENT --page " + page.name(), 1);
  return true;
}

void TableCommand::showNotes() const {
  showMissingColumns();
  showAlikeTexts();
  for (const ExampleCell& cell : m_cells) {
    const bool isVolume = cell.type == COLUMN_TYPE_VOLUME;
    const String remark = isVolume              ? remarkOnVolume(cell.text)
                          : isAmount(cell.type) ? remarkOnNumber(cell.text)
                                                : String();
    if (!remark.empty())
      m_out.line(u"Note: " + columnTypeName(cell.type) + u": " + remark + u".");
  }
}

void TableCommand::showMissingColumns() const {
  const auto has = [this](ColumnType type) {
    return std::any_of(m_cells.begin(), m_cells.end(),
                       [type](const ExampleCell& cell) { return cell.type == type; });
  };
  String missing;
  for (const ColumnType type : has(COLUMN_TYPE_DATE) ? PRICES : CODES)
    if (!has(type) && type != COLUMN_TYPE_OPEN && type != COLUMN_TYPE_ADJ_CLOSE)
      missing += (missing.empty() ? u"" : u", ") + columnTypeName(type);
  if (!missing.empty())
    m_out.line(u"Note: the program also needs these columns: " + missing + u".");
}

void TableCommand::showAlikeTexts() const {
  for (std::size_t i = 0; i < m_cells.size(); ++i)
    for (std::size_t j = i + 1; j < m_cells.size(); ++j)
      if (asShown(m_cells[i].text) == asShown(m_cells[j].text))
        m_out.line(u"Note: " + columnTypeName(m_cells[i].type) + u" and " + columnTypeName(m_cells[j].type) +
                   u" have the same text here and can be confused. Use a row whose texts differ.");
}

} // namespace Tallymoor
