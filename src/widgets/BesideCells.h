#pragma once
#include "widgets/CellGrid.h"

namespace Tallymoor {

/// A part of a table that stands beside its cells, as the header of its rows: a click on it gives the
/// keyboard to the cells, where the next key belongs.
template <class Part>
class BesideCells : public Part {
public:
  template <class... Arguments>
  explicit BesideCells(CellGrid* table, Arguments... arguments) : Part(table, arguments...), m_table(table) {}

  long handle(FXObject* sender, FXSelector selector, void* data) override {
    if (FXSELTYPE(selector) != SEL_FOCUS_SELF)
      return Part::handle(sender, selector, data);
    m_table->takeKeyboard();
    return 1;
  }

private:
  CellGrid* m_table;
};

} // namespace Tallymoor
