#pragma once
#include "foundation/NotYetKnown.h"
#include "widgets/Column.h"
#include <optional>

namespace Tallymoor {

// What the cell functions of all tables have in common.

/// A cell of this type, or an empty one where the value is not finite.
CellResult figure(double value, CellResultType type);
/// Likewise, and empty for nothing.
CellResult figure(const std::optional<double>& value, CellResultType type);

/// What the row's cell in that column holds. Throws what the cell function threw.
double cellValue(Row& row, Column::Function function);

/// The gain in percent as if it had gone on for a year; 0 for no days, empty where there is no gain.
CellResult annualised(Row& row, Column::Function gain, Column::Function days);

/// The text of a total or other figure of many cells; NOT_YET_KNOWN where making it throws NotYetKnown.
template <class MakeText>
String textOrNotYetKnown(MakeText makeText) {
  try {
    return makeText();
  } catch (const NotYetKnown&) {
    return NOT_YET_KNOWN;
  }
}

} // namespace Tallymoor
