#include "views/PricesTable.h"
#include "foundation/Amounts.h"
#include "market/PriceStatus.h"
#include "market/StockNames.h"
#include "market/TallymoorInternet.h"
#include "widgets/HandlerScope.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(PricesTable)
PricesTableMap[] = {
    FXMAPFUNC(SEL_CHANGED, Table::ID_TABLE, PricesTable::onChanged),
};

FXIMPLEMENT_ABSTRACT(PricesTable, Table, PricesTableMap, ARRAYNUMBER(PricesTableMap))

namespace {

TallymoorInternet& gateway() {
  return TallymoorInternet::Instance();
}

const String& codeOf(const Row& row) {
  return row.payload<String>();
}

/// The last one up to today, or up to the view date.
std::optional<KnownClose> lastPrice(const String& code) {
  return gateway().lastTradedClose(code, Date());
}

CellResult nameCell(Row& row) {
  return CellResult(StockNames::nameOf(codeOf(row)));
}

CellResult priceCell(Row& row) {
  const auto last = lastPrice(codeOf(row));
  return last ? CellResult(last->close, CELL_PRICE) : CellResult(String());
}

CellResult sourceCell(Row& row) {
  const PriceStatus::OfCode status = gateway().priceStatus().ofCode(codeOf(row));
  if (!status.price)
    return CellResult(String());
  if (status.isTyped)
    return CellResult(u"typed");
  return CellResult(status.isSample ? u"made up, by the sample service" : status.source);
}

CellResult dayCell(Row& row) {
  const auto last = lastPrice(codeOf(row));
  return last ? CellResult(last->day) : CellResult(String());
}

CellResult ageCell(Row& row) {
  const auto last = lastPrice(codeOf(row));
  return last ? CellResult(Date().daysSince(last->day)) : CellResult(String());
}

/// What is wrong, and what to do about it.
CellResult stateCell(Row& row) {
  const String& code = codeOf(row);
  const auto doubtful = gateway().doubtfulPrices();
  if (doubtful.contains(code))
    return CellResult(u"Doubtful: accept or refuse it.");
  if (gateway().isBadCode(code))
    return CellResult(u"Marked as delisted: its past prices are not fetched.");
  if (const auto reasons = gateway().priceStatus().ofCode(code).reasons; !reasons.empty())
    return CellResult(reasons.front().source + u": " + reasons.front().text);
  if (!lastPrice(code))
    return CellResult(u"No price is known. Check the code, or type a price.");
  return CellResult(String());
}

} // namespace

PricesTable::PricesTable(FXComposite* parent) : Table(u"Prices Table", parent, true, nullptr) {
  updateTable();
}

void PricesTable::fillTable() {
  const String chosen = chosenCode();
  clear();
  addColumn(std::make_unique<Column>(u"Name", nameCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"Last price", priceCell, COMPARE_NUMBER));
  addColumn(std::make_unique<Column>(u"Day", dayCell, COMPARE_OLDEST_FIRST));
  addColumn(std::make_unique<Column>(u"Age", ageCell, COMPARE_NUMBER))
      .setToolTip(u"Days since the day of the price");
  addColumn(std::make_unique<Column>(u"State", stateCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"Source", sourceCell, COMPARE_TEXT, true, FXTableItem::LEFT))
      .setToolTip(u"Where the last price came from; empty if that was before the program was started");
  m_codes.clear();
  for (const String& code : gateway().priceUpdater().codes())
    addRow(std::make_unique<Row>(code, &m_codes.emplace_back(code)));
  rebuild();
  choose(chosen);
}

String PricesTable::chosenCode() const {
  const Row* row = rowAt(std::max(getCurrentRow(), 0));
  return row ? codeOf(*row) : String();
}

void PricesTable::choose(const String& code) {
  if (hasRow(code) && getNumColumns() > 0)
    setCurrentItem(getRow(code), 0);
  selectCurrentRow();
}

void PricesTable::selectCurrentRow() {
  if (rowAt(getCurrentRow()))
    selectRow(getCurrentRow());
  if (m_choiceChanged)
    m_choiceChanged();
}

String PricesTable::summary() const {
  const auto numberText = [](std::size_t number) {
    return String::fromLong(static_cast<std::int64_t>(number));
  };
  if (m_codes.empty())
    return u"No stock is held or watched yet.";
  const auto known =
      std::ranges::count_if(m_codes, [](const String& code) { return lastPrice(code).has_value(); });
  String text = numberText(static_cast<std::size_t>(known)) + u" of " + numberText(m_codes.size()) +
                (m_codes.size() == 1 ? u" stock has a price." : u" stocks have a price.");
  if (const std::size_t doubtful = gateway().doubtfulPrices().size(); doubtful == 1)
    text += u" The price of 1 stock is doubtful.";
  else if (doubtful > 1)
    text += u" The prices of " + numberText(doubtful) + u" stocks are doubtful.";
  return text;
}

long PricesTable::onChanged(FXObject*, FXSelector, void*) {
  return guardedHandler(u"PricesTable::onChanged failed.", [this] { selectCurrentRow(); });
}

} // namespace Tallymoor
