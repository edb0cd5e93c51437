#include "views/CellFigures.h"
#include "foundation/Amounts.h"
#include "widgets/Table.h"
#include <cmath>

namespace Tallymoor {

namespace {

constexpr double DAYS_A_YEAR = 365.0;

} // namespace

CellResult figure(double value, CellResultType type) {
  return std::isfinite(value) ? CellResult(value, type) : CellResult(String());
}

CellResult figure(const std::optional<double>& value, CellResultType type) {
  return value ? figure(*value, type) : CellResult(String());
}

double cellValue(Row& row, Column::Function function) {
  return row.table()->cell(function, row).amount();
}

CellResult annualised(Row& row, Column::Function gain, Column::Function days) {
  const double number = cellValue(row, days);
  const CellResult& percent = row.table()->cell(gain, row);
  if (showsAsZero(number))
    return CellResult(0.0, CELL_PERCENT);
  return percent.type() == CELL_TEXT ? percent : figure(percent.value() * DAYS_A_YEAR / number, CELL_PERCENT);
}

} // namespace Tallymoor
