#pragma once
#include "foundation/Exception.h"
#include "widgets/Table.h"
#include "widgets/TableItem.h"
#include <functional>
#include <list>
#include <string>
#include <vector>

namespace Tallymoor {

/// A share in a row of the sample table.
struct SampleShare {
  String code;
  double number = 0.0;
  double price = 0.0;
  Date bought{std::uint32_t(0)};
  String note{};
  bool broken = false; ///< Computing its "Value" throws.
};

/// A table of shares, declared like the program's own tables. Its reactions to clicks are recorded or
/// replaced.
class SampleTable : public Table {
public:
  SampleTable(FXComposite* parent, bool fillsParent = true, Watcher* watcher = nullptr,
              const String& name = u"Sample Table", CompareType rowCompare = COMPARE_TEXT)
      : Table(name, parent, fillsParent, watcher, rowCompare) {}

  std::list<SampleShare> shares;
  String valueTitle = u"Value";
  bool withNote = true;
  std::function<void(Table&)> declareMore;
  int fills = 0;
  int computed = 0;

  std::function<void(const TableClick&)> onRowPopup, onCellClick, onColumnPopup, onColumnClick, onCornerClick;
  std::function<void(Column&, Row&, const String& text)> onCellEdited;
  std::function<void(Row&)> onEditRow;

  static CellResult number(Row& row) { return CellResult(share(row).number, CELL_NUMBER); }
  static CellResult price(Row& row) {
    ++static_cast<SampleTable*>(row.table())->computed;
    return CellResult(share(row).price, CELL_PRICE);
  }
  static CellResult value(Row& row) {
    if (share(row).broken)
      throw Exception(u"no price");
    return CellResult(row.table()->cell(number, row).value() * row.table()->cell(price, row).value(),
                      CELL_MONEY);
  }
  static CellResult bought(Row& row) { return CellResult(share(row).bought); }
  static CellResult note(Row& row) { return CellResult(share(row).note); }

  using Table::inputColumn;
  using Table::inputRow;
  using Table::setInputRow;

  FXWindow* openEditor() const { return editor; }
  std::vector<std::string> column(FXint index) const {
    std::vector<std::string> texts;
    for (FXint row = 0; row < getNumRows(); ++row)
      texts.emplace_back(getItemText(row, index).text());
    return texts;
  }
  std::vector<std::string> keys() const {
    std::vector<std::string> texts;
    for (FXint row = 0; row < getNumRows(); ++row)
      texts.emplace_back(getRowText(row).text());
    return texts;
  }
  std::vector<std::string> titles() const {
    std::vector<std::string> texts;
    for (FXint index = 0; index < getNumColumns(); ++index)
      texts.emplace_back(getColumnText(index).text());
    return texts;
  }
  const TableItem& item(FXint row, FXint index) const {
    return *static_cast<const TableItem*>(getItem(row, index));
  }

protected:
  void fillTable() override {
    ++fills;
    clear();
    declareColumns();
    for (SampleShare& share : shares)
      addRow(std::make_unique<Row>(share.code, &share));
    rebuild();
  }
  void rowPopup(const TableClick& click) override { call(onRowPopup, click, &SampleTable::baseRowPopup); }
  void rightClickCell(const TableClick& click) override {
    call(onCellClick, click, &SampleTable::baseCellClick);
  }
  void columnPopup(const TableClick& click) override {
    call(onColumnPopup, click, &SampleTable::baseColumnPopup);
  }
  void clickColumn(const TableClick& click) override {
    call(onColumnClick, click, &SampleTable::baseColumnClick);
  }
  void clickCorner() override {
    if (onCornerClick)
      onCornerClick({});
    else
      Table::clickCorner();
  }
  void cellEdited(Column& column, Row& row) override {
    if (onCellEdited)
      onCellEdited(column, row, shownText(column, row));
  }

  void editRow(Row& row) override {
    if (onEditRow)
      onEditRow(row);
  }

private:
  static SampleShare& share(Row& row) { return row.payload<SampleShare>(); }

  void declareColumns() {
    addColumn(std::make_unique<Column>(u"Number", number, COMPARE_NUMBER));
    addColumn(std::make_unique<Column>(u"Price", price, COMPARE_AMOUNT, true, FXTableItem::RIGHT, true))
        .setToolTip(u"What one share costs now");
    addColumn(std::make_unique<Column>(valueTitle, value, COMPARE_AMOUNT));
    addColumn(std::make_unique<Column>(u"Bought", bought, COMPARE_OLDEST_FIRST, false, 0));
    if (withNote)
      addColumn(std::make_unique<Column>(u"Note", note, COMPARE_TEXT, true, FXTableItem::LEFT));
    if (declareMore)
      declareMore(*this);
  }

  void call(const std::function<void(const TableClick&)>& instead, const TableClick& click,
            void (SampleTable::*base)(const TableClick&)) {
    if (instead)
      instead(click);
    else
      (this->*base)(click);
  }
  void baseRowPopup(const TableClick& click) { Table::rowPopup(click); }
  void baseCellClick(const TableClick& click) { Table::rightClickCell(click); }
  void baseColumnPopup(const TableClick& click) { Table::columnPopup(click); }
  void baseColumnClick(const TableClick& click) { Table::clickColumn(click); }
};

/// Records a table's notifications.
class NotingWatcher : public Table::Watcher {
public:
  void tableChanged(bool rebuilt) override {
    told.push_back(rebuilt);
    if (then)
      then(rebuilt);
  }
  std::vector<bool> told;
  std::function<void(bool)> then;
};

} // namespace Tallymoor
