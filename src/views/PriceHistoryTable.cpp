#include "views/PriceHistoryTable.h"
#include "foundation/Amounts.h"
#include "foundation/Platform.h"
#include "market/TallymoorInternet.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(PriceHistoryTable)
PriceHistoryTableMap[] = {
    FXMAPFUNC(SEL_CHANGED, Table::ID_TABLE, PriceHistoryTable::onChanged),
};

FXIMPLEMENT_ABSTRACT(PriceHistoryTable, Table, PriceHistoryTableMap, ARRAYNUMBER(PriceHistoryTableMap))

namespace {

using StoredDay = PriceHistoryTable::StoredDay;

String local(const Date& day) {
  return day.toString(DATE_DISPLAY_LOCAL);
}

/// Empty if unknown.
CellResult priceCell(double price) {
  return showsAsZero(price) ? CellResult(String()) : CellResult(price, CELL_PRICE);
}

CellResult closeCell(Row& row) {
  return priceCell(row.payload<StoredDay>().value.close);
}

CellResult highCell(Row& row) {
  return priceCell(row.payload<StoredDay>().value.high);
}

CellResult lowCell(Row& row) {
  return priceCell(row.payload<StoredDay>().value.low);
}

CellResult volumeCell(Row& row) {
  const std::int32_t volume = row.payload<StoredDay>().value.volume;
  return volume > 0 ? CellResult(volume) : CellResult(String());
}

CellResult originCell(Row& row) {
  switch (row.payload<StoredDay>().value.origin) {
  case PriceOrigin::Source:
    return CellResult(u"fetched");
  case PriceOrigin::Current:
    return CellResult(u"current");
  case PriceOrigin::Typed:
    return CellResult(u"typed");
  default:
    return CellResult(u"not recorded");
  }
}

/// A slip of the decimal sign, most likely.
bool isFarFrom(double price, double before) {
  constexpr double FAR = 3.0;
  return price > before * FAR || price * FAR < before;
}

/// Tells the user what is wrong with a typed close, or asks about it. True if it is to be stored.
bool isAccepted(const String& code, const Date& day, double close) {
  if (close < 0.0 || showsAsZero(close)) {
    MainWindow::error(u"The price of " + code + u" on " + local(day) +
                      u" must be a number above zero.\nThe old price stays.");
    return false;
  }
  const auto before = TallymoorInternet::Instance().lastTradedClose(code, day.plusDays(-1));
  return !before || !isFarFrom(close, before->close) ||
         MainWindow::question(shortPriceText(close) + u" on " + local(day) + u" is far from " +
                              shortPriceText(before->close) + u", the price of " + local(before->day) +
                              u".\nDo you want to record it all the same?");
}

/// Where the text is empty, the high or low is not known. Else tells the user what is wrong with it. True if
/// it is to be stored.
bool isRange(const String& code, const Date& day, const ShareValue& value, const String& typed) {
  const bool isAbove = showsAsZero(value.high) || value.high >= std::max(value.close, value.low);
  const bool isBelow = showsAsZero(value.low) || (value.low > 0.0 && value.low <= value.close);
  const bool isNumber = typed.empty() || !showsAsZero(Platform::Instance().parseAmount(typed));
  if (isNumber && isAbove && isBelow)
    return true;
  MainWindow::error(u"The close of " + code + u" on " + local(day) + u" is " + shortPriceText(value.close) +
                    u": the high must be a number\nthat is not below it, and the low one that is not above "
                    u"it.\nThe old ones stay.");
  return false;
}

} // namespace

PriceHistoryTable::PriceHistoryTable(FXComposite* parent, const String& code)
    : Table(u"Price History Table", parent, true, nullptr, COMPARE_NEWEST_FIRST), m_code(code) {
  setEmptyText(u"No price of this stock is stored.");
  updateTable();
}

void PriceHistoryTable::fillTable() {
  const StoredDay* const before = chosen();
  const std::optional<Date> chosenDay = before ? std::optional(before->day) : std::nullopt;
  clear();
  addColumn(std::make_unique<Column>(u"Close", closeCell, COMPARE_NUMBER, true, FXTableItem::RIGHT, true))
      .setToolTip(u"Type over it to correct it; a typed price is never replaced by a fetched one");
  addColumn(std::make_unique<Column>(u"High", highCell, COMPARE_NUMBER, true, FXTableItem::RIGHT, true));
  addColumn(std::make_unique<Column>(u"Low", lowCell, COMPARE_NUMBER, true, FXTableItem::RIGHT, true));
  addColumn(std::make_unique<Column>(u"Volume", volumeCell, COMPARE_NUMBER));
  addColumn(std::make_unique<Column>(u"From", originCell, COMPARE_TEXT, true, FXTableItem::LEFT))
      .setToolTip(u"Where the close came from; current is a price of a day that was not over");
  m_days.clear();
  for (const auto& [day, value] : TallymoorInternet::Instance().cachedRows(m_code, Date(0u), Date()))
    if (value.origin != PriceOrigin::Filled)
      addRow(std::make_unique<Row>(local(day), &m_days.emplace_back(StoredDay{day, value})));
  rebuild();
  if (chosenDay)
    choose(*chosenDay);
  else
    selectCurrentRow();
}

void PriceHistoryTable::cellEdited(Column& column, Row& row) {
  const String text = shownText(column, row);
  const StoredDay stored = row.payload<StoredDay>();
  if (text == column(row))
    return;
  if (&column != columns().front().get())
    return rangeEdited(column, stored, text);
  const double close = Platform::Instance().parseAmount(text);
  if (isAccepted(m_code, stored.day, close) && m_closeTyped)
    m_closeTyped(stored.day, close);
}

void PriceHistoryTable::rangeEdited(const Column& column, StoredDay stored, const String& text) {
  const bool isHigh = &column == columns()[1].get();
  (isHigh ? stored.value.high : stored.value.low) = Platform::Instance().parseAmount(text);
  if (isRange(m_code, stored.day, stored.value, text.trimmed()) && m_rangeTyped)
    m_rangeTyped(stored.day, stored.value.high, stored.value.low);
}

const PriceHistoryTable::StoredDay* PriceHistoryTable::chosen() const {
  const Row* row = rowAt(std::max(getCurrentRow(), 0));
  return row ? &row->payload<StoredDay>() : nullptr;
}

void PriceHistoryTable::choose(const Date& day) {
  if (const String key = local(day); hasRow(key) && getNumColumns() > 0)
    setCurrentItem(getRow(key), std::max(getCurrentColumn(), 0));
  selectCurrentRow();
}

void PriceHistoryTable::selectCurrentRow() {
  if (rowAt(getCurrentRow()))
    selectRow(getCurrentRow());
  if (m_choiceChanged)
    m_choiceChanged();
}

long PriceHistoryTable::onChanged(FXObject*, FXSelector, void*) {
  return guardedHandler(u"PriceHistoryTable::onChanged failed.", [this] { selectCurrentRow(); });
}

} // namespace Tallymoor
