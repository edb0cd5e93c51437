#include "views/WatchlistTable.h"
#include "foundation/KeptTexts.h"
#include "market/TallymoorInternet.h"
#include "views/PriceLimits.h"
#include "views/WatchlistCells.h"
#include "views/WatchlistCommands.h"
#include "views/WatchlistSettings.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include <algorithm>
#include <set>

namespace Tallymoor {

FXDEFMAP(WatchlistTable)
WatchlistTableMap[] = {
    FXMAPFUNC(SEL_COMMAND, WatchlistTable::ID_REMOVE, WatchlistTable::onRemoveRow),
    FXMAPFUNC(SEL_COMMAND, WatchlistTable::ID_BUY, WatchlistTable::onBuy),
    FXMAPFUNC(SEL_CHANGED, Table::ID_TABLE, WatchlistTable::onChanged),
};

FXIMPLEMENT_ABSTRACT(WatchlistTable, Table, WatchlistTableMap, ARRAYNUMBER(WatchlistTableMap))

WatchlistTable::WatchlistTable(const String& name, Kind kind, const std::vector<String>& codes,
                               WatchlistCommands& commands, FXComposite* parent)
    : Table(name, parent, true, nullptr, COMPARE_TEXT), m_kind(kind), m_commands(&commands) {
  setCodes(codes);
  TallymoorInternet::Instance().priceUpdater().addObserver(this);
}

WatchlistTable::~WatchlistTable() {
  if (TallymoorInternet::exists())
    TallymoorInternet::Instance().priceUpdater().removeObserver(this);
}

void WatchlistTable::setCodes(const std::vector<String>& codes) {
  m_codes.clear();
  for (const String& code : codes)
    if (std::find(m_codes.begin(), m_codes.end(), code) == m_codes.end())
      m_codes.push_back(code);
  updateTable();
}

void WatchlistTable::fillTable() {
  clear();
  m_rowData.clear();
  declareWatchlistColumns(*this);
  for (const String& code : m_codes) {
    HeldShareRow& stock = m_rowData.emplace_back();
    stock.code = code;
    stock.table = this;
    addRow(std::make_unique<Row>(code, &stock));
  }
  // While the past is shown no current price is asked for, and those of today must still be there when it
  // comes back.
  if (!Date::hasFixedDate())
    m_watchedCodes.watch(std::set<String>(m_codes.begin(), m_codes.end()));
  setEmptyText(emptyText());
  rebuild();
  choiceChanged();
}

String WatchlistTable::emptyText() const {
  return editable()
             ? u"This watchlist is empty.\nRight-click its name in the tree and choose \"Add a stock to "
               u"watch...\"."
             : u"This portfolio holds no shares.\nWhat you buy is listed here by itself.";
}

std::optional<double> WatchlistTable::capital() const {
  return m_commands->capitalOf(editable() ? String() : name());
}

Portfolios WatchlistTable::portfolios() const {
  return m_commands->portfolios();
}

String WatchlistTable::chosenCode() const {
  const Row* current = rowAt(getCurrentRow());
  const Row* row = current ? current : rowAt(0);
  return row ? row->key() : String();
}

void WatchlistTable::choiceChanged() const {
  if (m_choiceWatcher)
    m_choiceWatcher();
}

void WatchlistTable::currentPriceUpdated(const String& code, double) {
  markStale(code);
}

void WatchlistTable::pricesUpdateFinished() {}

void WatchlistTable::historicalPriceChanged(const String& code, const Date&, double) {
  markStale(code);
}

void WatchlistTable::historyArrived(const String& code) {
  markStale(code);
}

void WatchlistTable::cellEdited(Column& column, Row& row) {
  if (column.function() != &WatchlistCells::priceMinMax)
    return;
  const String& code = row.payload<HeldShareRow>().code;
  const PriceLimits old = PriceLimits::ofStock(code);
  if (const auto limits = changedLimits(shownText(column, row), old.text(), old)) {
    m_commands->limitsTyped(code, *limits);
    choiceChanged(); // the limits are drawn, too
  }
}

void WatchlistTable::rowPopup(const TableClick& click) {
  if (!editable() || !click.row)
    return;
  setInputRow(click.row);
  const String& code = click.row->payload<HeldShareRow>().code;
  ContextMenu menu(this, this);
  menu.addCommand(String(u"Remove stock ") + code + u" from watchlist", ID_REMOVE);
  menu.addCommand(String(u"Buy stock ") + code + u"...", ID_BUY);
  menu.run(click.screenX, click.screenY);
}

void WatchlistTable::editRow(Row& row) {
  const FXint limits = getColumn(&WatchlistCells::priceMinMax).index();
  if (limits < 0)
    return;
  makePositionVisible(row.index(), limits); // far to the right, and what is typed would not be seen
  startInput(row.index(), limits);
}

long WatchlistTable::onRemoveRow(FXObject*, FXSelector, void*) {
  return guardedHandler(u"WatchlistTable::onRemoveRow failed.", [this] {
    if (inputRow())
      removeCode(String(inputRow()->key()));
  });
}

void WatchlistTable::removeCode(const String& code) {
  WatchlistSettings::removeCode(name(), code);
  std::erase(m_codes, code);
  updateTable();
}

long WatchlistTable::onBuy(FXObject*, FXSelector, void*) {
  return guardedHandler(kept::BUY_OF_WATCHED, [this] { m_commands->buyShares(); });
}

long WatchlistTable::onChanged(FXObject*, FXSelector, void*) {
  return guardedHandler(u"WatchlistTable::onChanged failed.", [this] { choiceChanged(); });
}

} // namespace Tallymoor
