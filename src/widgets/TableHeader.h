#pragma once
#include <fx.h>

namespace Tallymoor {

class CellGrid;

/// The column header of a table, which shows the help of the column under the mouse in the status line. With
/// the keyboard it is reached from the first row by the up arrow: the left and right arrows then go from
/// title to title, before the first one to the corner; Enter or the space bar is a click on it, the menu key
/// opens its popup, and the down arrow or Escape leads back to the cells.
class TableHeader : public FXHeader {
  FXDECLARE(TableHeader)
public:
  /// Target and owner are the table; its messages carry this identifier.
  TableHeader(CellGrid* table, FXSelector identifier);

  /// Gives the keyboard to the title of this column.
  void takeKeyboard(FXint column);
  bool canFocus() const override { return true; }

  long onMotion(FXObject* sender, FXSelector selector, void* data);
  long onPaint(FXObject* sender, FXSelector selector, void* data);
  /// Called by a click, which sorts and leaves the keyboard in the cells.
  long onFocusSelf(FXObject* sender, FXSelector selector, void* data);
  long onFocusIn(FXObject* sender, FXSelector selector, void* data);
  long onFocusOut(FXObject* sender, FXSelector selector, void* data);
  long onKeyPress(FXObject* sender, FXSelector selector, void* data);

protected:
  TableHeader() = default;

private:
  static constexpr FXint CORNER = -1;

  void moveTo(FXint place);
  void press();
  void backToCells();
  void makeVisible(FXint column);
  void showPlace();

  CellGrid* m_table = nullptr;
  FXint m_place = 0; ///< the column whose title has the keyboard, or CORNER
};

} // namespace Tallymoor
