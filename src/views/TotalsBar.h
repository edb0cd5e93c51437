#pragma once
#include "widgets/Column.h"
#include <fx.h>
#include <vector>

namespace Tallymoor {

class Table;

/// The totals below a table, each under its column, wherever the user scrolls or drags the columns.
class TotalsBar : public FXPacker {
  FXDECLARE(TotalsBar)
public:
  /// The table is not owned and outlives the bar.
  TotalsBar(FXComposite* parent, Table* table);

  /// A cell under each of these columns that is shown, in place of the cells before.
  void showColumns(const std::vector<Column::Function>& functions);
  /// The total of that column; does nothing while the column is hidden.
  void setTotal(Column::Function function, const String& text);
  /// Null while the column is hidden.
  FXLabel* total(Column::Function function) const;

  /// The table was scrolled or its columns have moved: the totals go along.
  void followTable();

  FXint getDefaultWidth() override;
  FXint getDefaultHeight() override;
  void layout() override;

protected:
  TotalsBar() = default;

private:
  struct Total {
    Column::Function function;
    FXLabel* label;
  };

  /// The left edge of the cells, in the bar: under the right edge of the table's row header.
  FXint cellsLeft() const;
  FXint tableLeft() const;
  void place(const Total& total, FXint cellsLeft, FXint height) const;

  Table* m_table = nullptr;
  FXLabel* m_caption = nullptr;
  FXComposite* m_cells = nullptr; ///< cuts off what is scrolled away
  std::vector<Total> m_totals;
};

} // namespace Tallymoor
