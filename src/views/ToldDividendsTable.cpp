#include "views/ToldDividendsTable.h"
#include "books/SharePortfolioUser.h"
#include "market/TallymoorInternet.h"
#include "widgets/HandlerScope.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

FXDEFMAP(ToldDividendsTable)
ToldDividendsTableMap[] = {
    FXMAPFUNC(SEL_CHANGED, Table::ID_TABLE, ToldDividendsTable::onChanged),
};

FXIMPLEMENT_ABSTRACT(ToldDividendsTable, Table, ToldDividendsTableMap, ARRAYNUMBER(ToldDividendsTableMap))

namespace {

const UnrecordedDividend& dividendOf(const Row& row) {
  return row.payload<UnrecordedDividend>();
}

CellResult codeCell(Row& row) {
  return CellResult(dividendOf(row).code);
}

/// Six decimals as far as they are needed: a rate may be a fraction of a cent.
CellResult rateCell(Row& row) {
  constexpr int DECIMALS = 6, FEWEST = 2;
  String text = String::fromDouble(dividendOf(row).rate, DECIMALS);
  const std::size_t shortest = text.find(u'.') + 1 + FEWEST;
  while (text.size() > shortest && text.back() == u'0')
    text.pop_back();
  return CellResult(text);
}

CellResult numberCell(Row& row) {
  return CellResult(dividendOf(row).number, CELL_NUMBER);
}

CellResult amountCell(Row& row) {
  return CellResult(dividendOf(row).number * dividendOf(row).rate, CELL_MONEY);
}

CellResult portfolioCell(Row& row) {
  return CellResult(dividendOf(row).portfolio->name());
}

} // namespace

ToldDividendsTable::ToldDividendsTable(FXComposite* parent, Portfolios portfolios)
    : Table(u"Told Dividends Table", parent, true, nullptr, COMPARE_NEWEST_FIRST),
      m_portfolios(std::move(portfolios)) {
  setEmptyText(u"Your sources have told of no dividend\nthat is not recorded.");
  updateTable();
}

void ToldDividendsTable::fillTable() {
  clear();
  addColumn(std::make_unique<Column>(u"Stock", codeCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"Cash a share", rateCell, COMPARE_NUMBER));
  addColumn(std::make_unique<Column>(u"Shares", numberCell, COMPARE_NUMBER))
      .setToolTip(u"Held on the day before");
  addColumn(std::make_unique<Column>(u"Amount", amountCell, COMPARE_AMOUNT));
  addColumn(std::make_unique<Column>(u"Portfolio", portfolioCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  m_dividends.clear();
  for (const UnrecordedDividend& dividend :
       unrecordedDividends(m_portfolios, TallymoorInternet::Instance().toldDividends()))
    addRow(std::make_unique<Row>(dividend.day.toString(DATE_DISPLAY_LOCAL),
                                 &m_dividends.emplace_back(dividend)));
  rebuild();
  selectCurrentRow();
}

const UnrecordedDividend* ToldDividendsTable::chosen() const {
  const Row* row = rowAt(std::max(getCurrentRow(), 0));
  return row ? &dividendOf(*row) : nullptr;
}

void ToldDividendsTable::selectCurrentRow() {
  if (rowAt(getCurrentRow()))
    selectRow(getCurrentRow());
  if (m_choiceChanged)
    m_choiceChanged();
}

long ToldDividendsTable::onChanged(FXObject*, FXSelector, void*) {
  return guardedHandler(u"ToldDividendsTable::onChanged failed.", [this] { selectCurrentRow(); });
}

} // namespace Tallymoor
